// Export macro of the sgrender library (hidden visibility by default).
#pragma once

#define SGRENDER_API __attribute__((visibility("default")))
