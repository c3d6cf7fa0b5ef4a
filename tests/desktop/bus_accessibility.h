#pragma once

namespace desktop {

/// Makes the programs of the desktop show themselves to assistive programs. 0 on success.
int enableAccessibility();

/// Prints what an assistive program reads of every program, a line for each object, parents first:
/// "depth<TAB>role<TAB>x<TAB>y<TAB>width<TAB>height<TAB>states<TAB>name<TAB>description". Places
/// are native pixels of the screen; states are a decimal number with the bits of AT-SPI's
/// StateType. 0 on success.
int printAccessibles();

}  // namespace desktop
