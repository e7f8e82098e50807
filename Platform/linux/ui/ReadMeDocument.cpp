#include "Platform/linux/ui/ReadMeDocument.h"

#include "Platform/linux/ui/BoundedFile.h"

namespace halvorn {

std::unique_ptr<QTextDocument> readMeDocument(const Text& path) {
  const auto bytes = readBoundedFile(path, 8 * 1024 * 1024);
  if (!bytes) return nullptr;
  auto document = std::make_unique<QTextDocument>();
  document->setPlainText(QString::fromUtf8(*bytes));
  return document;
}

}  // namespace halvorn
