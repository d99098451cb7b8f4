// Export macro of the platform library (sgplatform): the array API, the
// foundation services and the class-object system share one shared library.
#pragma once

#if defined(SGPLATFORM_BUILDING)
#define SGPLATFORM_API __attribute__((visibility("default")))
#else
#define SGPLATFORM_API __attribute__((visibility("default")))
#endif

// Per-folder spellings, so that a declaration says which part it belongs to.
#define FOUNDATION_API SGPLATFORM_API
#define VX_API SGPLATFORM_API
#define VCOS_API SGPLATFORM_API
