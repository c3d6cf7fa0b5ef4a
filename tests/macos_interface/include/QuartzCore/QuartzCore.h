#pragma once
#include <Foundation/Foundation.h>
#include <CoreGraphics/CoreGraphics.h>
NS_ASSUME_NONNULL_BEGIN
typedef NSString *CALayerCornerCurve;
SUBSET_C_BEGIN
extern CALayerCornerCurve const kCACornerCurveContinuous SINCE(10.15);
SUBSET_C_END
@interface CALayer : NSObject <NSSecureCoding>
@property CGFloat cornerRadius;
@property (copy) CALayerCornerCurve cornerCurve SINCE(10.15);
@property BOOL masksToBounds;
@end
NS_ASSUME_NONNULL_END
