// What classes of today's system answer beyond those of GNUstep's headers. Included before every source in Objective-C++
// that is compiled with these headers.
#pragma once

#import <Foundation/Foundation.h>

@interface NSString (KTLaterSelectors)
+ (NSStringEncoding)stringEncodingForData:(NSData*)data
                          encodingOptions:(NSDictionary*)options
                          convertedString:(NSString**)string
                      usedLossyConversion:(BOOL*)usedLossyConversion;
@end

@class NSAppearance;
@interface NSObject (KTLaterSelectorsOfTheApplication)
- (NSAppearance*)effectiveAppearance;
@end

@interface NSObject (KTLaterSelectorsOfViews)
- (void)setAppearance:(NSAppearance*)appearance;
- (void)setAccessibilityLabel:(NSString*)label;
- (void)setAccessibilityHelp:(NSString*)help;
- (id)animator;
@end

@protocol NSSoundDelegate <NSObject>
@end
