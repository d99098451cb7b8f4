// Export macro of the sgclasses library (hidden visibility by default).
#pragma once

#define SGCLASSES_API __attribute__((visibility("default")))
