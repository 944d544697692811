#pragma once

// Symbol visibility of the host libraries. The shared library is built with hidden visibility by
// default; every public class is exported explicitly.
#if defined(KA_HOST_BUILDING)
#define KA_HOST_API __attribute__((visibility("default")))
#else
#define KA_HOST_API __attribute__((visibility("default")))
#endif
