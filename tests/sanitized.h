// ZKT_SANITIZED: 1 when this unit is built with AddressSanitizer (g++ or clang), else 0.
#ifndef ZKT_TESTS_SANITIZED_H
#define ZKT_TESTS_SANITIZED_H

#if defined(__SANITIZE_ADDRESS__)
#define ZKT_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZKT_SANITIZED 1
#endif
#endif
#ifndef ZKT_SANITIZED
#define ZKT_SANITIZED 0
#endif

#endif
