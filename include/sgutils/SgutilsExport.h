// The export macro of the sgutils library. The library builds with hidden
// visibility, so only what carries the macro is visible to its users.
#pragma once

#define SGUTILS_API __attribute__((visibility("default")))
