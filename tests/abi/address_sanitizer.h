// Defines TABRIN_ADDRESS_SANITIZER where that is at work, whichever compiler has put it in.
#pragma once

#if defined(__SANITIZE_ADDRESS__)
#define TABRIN_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define TABRIN_ADDRESS_SANITIZER 1
#endif
#endif
