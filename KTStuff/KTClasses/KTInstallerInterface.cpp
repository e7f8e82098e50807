#include "KTStuff/KTClasses/KTInstallerInterface.h"

namespace halvorn {

const char KTInstallerKeyProductName[] = "productName";
const char KTInstallerKeyVersion[] = "version";
const char KTInstallerKeyMinSystemVersion[] = "minSystemVersion";
const char KTInstallerKeySourcePath[] = "sourcePath";
const char KTInstallerKeyDestinationPath[] = "destinationPath";
const char KTInstallerKeyDocumentationPath[] = "documentationPath";
const char KTInstallerKeyReadMePath[] = "readMePath";
const char KTInstallerKeyProductCode[] = "productCode";
const char KTInstallerKeyQuitCode[] = "quitCode";
const char KTInstallerKeyIconPath[] = "iconPath";
const char KTInstallerKeyWrapperPath[] = "wrapperPath";
const char KTInstallerCompletionSound[] = "completionSound";
const char KTInstallerCompletionQuit[] = "completionQuit";

}  // namespace halvorn
