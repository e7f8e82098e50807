#include "Platform/text/mac/MacHtmlText.h"

#import <AppKit/AppKit.h>

#include "Platform/running/mac/Conversions.h"

// Asked by the importer before anything that a page names is loaded.
@interface KTLoadsNothing : NSObject
@end
@implementation KTLoadsNothing
- (id)webView:(id)view
            resource:(id)resource
     willSendRequest:(id)request
    redirectResponse:(id)response
      fromDataSource:(id)source {
  static_cast<void>(view);
  static_cast<void>(resource);
  static_cast<void>(request);
  static_cast<void>(response);
  static_cast<void>(source);
  return nil;
}
@end

namespace halvorn {
namespace {

// UTF-16 with its mark, the one order of bytes that every system reads alike. Units go as they are, lone ones too.
NSData* pageOf(const Text& html) {
  std::string bytes = "\xFF\xFE";
  for (const char16_t unit : html.units()) {
    bytes.push_back(static_cast<char>(unit & 0xFF));
    bytes.push_back(static_cast<char>(unit >> 8));
  }
  return dataOf(bytes);
}

}  // namespace

OptionalText MacHtmlText::importedText(const Text& html) const {
  if (![NSThread isMainThread]) return std::nullopt;
  return answered(OptionalText(), [&] {
    NSArray* const names =
        [NSArray arrayWithObjects:NSWebResourceLoadDelegateDocumentOption, NSTimeoutDocumentOption,
                                  NSTextEncodingNameDocumentOption, nil];
    NSArray* const values =
        [NSArray arrayWithObjects:[[[KTLoadsNothing alloc] init] autorelease],
                                  [NSNumber numberWithDouble:kLongestImport], @"utf-16", nil];
    NSDictionary* const options = [NSDictionary dictionaryWithObjects:values forKeys:names];
    NSAttributedString* const page = [[[NSAttributedString alloc] initWithHTML:pageOf(html)
                                                                       options:options
                                                            documentAttributes:nullptr] autorelease];
    return textOf([page string]);
  });
}

}  // namespace halvorn
