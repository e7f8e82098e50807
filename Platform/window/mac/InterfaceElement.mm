#include "Platform/window/mac/InterfaceElement.h"

#import <Foundation/Foundation.h>

#include <cstdlib>

#include "Core/Format.h"
#include "Platform/running/mac/Conversions.h"

using halvorn::InterfaceElement;

// Gathers the elements as the parser meets them.
@interface KTInterfaceParts : NSObject <NSXMLParserDelegate> {
  std::vector<InterfaceElement>* open_;
}
- (InterfaceElement*)root;
@end

@implementation KTInterfaceParts

- (id)init {
  self = [super init];
  if (self != nil) open_ = new std::vector<InterfaceElement>(1);
  return self;
}

- (void)dealloc {
  delete open_;
  [super dealloc];
}

- (InterfaceElement*)root {
  return open_->size() == 1 && open_->front().children.size() == 1 ? &open_->front().children.front()
                                                                   : nullptr;
}

- (void)parser:(NSXMLParser*)parser
    didStartElement:(NSString*)name
       namespaceURI:(NSString*)uri
      qualifiedName:(NSString*)qualifiedName
         attributes:(NSDictionary*)attributes {
  static_cast<void>(parser);
  static_cast<void>(uri);
  static_cast<void>(qualifiedName);
  InterfaceElement element;
  element.name = halvorn::textOf(name)->bytes();
  NSArray* const keys = [attributes allKeys];
  for (NSUInteger i = 0; i < [keys count]; ++i) {
    NSString* const key = [keys objectAtIndex:i];
    element.attributes[halvorn::textOf(key)->bytes()] = *halvorn::textOf([attributes objectForKey:key]);
  }
  open_->push_back(std::move(element));
}

- (void)parser:(NSXMLParser*)parser
    didEndElement:(NSString*)name
     namespaceURI:(NSString*)uri
    qualifiedName:(NSString*)qualifiedName {
  static_cast<void>(parser);
  static_cast<void>(name);
  static_cast<void>(uri);
  static_cast<void>(qualifiedName);
  if (open_->size() < 2) return;
  InterfaceElement element = std::move(open_->back());
  open_->pop_back();
  open_->back().children.push_back(std::move(element));
}

@end

namespace halvorn {

int InterfaceElement::number(const std::string& attribute, int otherwise) const {
  const std::string text = value(attribute).bytes();
  char* end = nullptr;
  const long found = std::strtol(text.c_str(), &end, 10);
  return text.empty() || *end != '\0' || found < -10'000 || found > 10'000 ? otherwise
                                                                           : static_cast<int>(found);
}

ReadInterfaceElement readInterfaceElement(const std::string& description) {
  return answered(ReadInterfaceElement{std::nullopt, "no parser"}, [&]() -> ReadInterfaceElement {
    NSXMLParser* const parser = [[[NSXMLParser alloc] initWithData:dataOf(description)] autorelease];
    KTInterfaceParts* const parts = [[[KTInterfaceParts alloc] init] autorelease];
    [parser setDelegate:parts];
    const bool isRead = [parser parse];
    if (isRead && [parts root] != nullptr) return {std::move(*[parts root]), Text()};
    return {std::nullopt, format("line %d: no XML", static_cast<long long>([parser lineNumber]))};
  });
}

}  // namespace halvorn
