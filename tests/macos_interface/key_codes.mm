#import <Carbon/Carbon.h>

// The codes behind which the program has its names of keys are those of the system's symbols.
#define KEY(symbol, code, name) static_assert((symbol) == (code));
#include "key_names.inc"
#undef KEY
