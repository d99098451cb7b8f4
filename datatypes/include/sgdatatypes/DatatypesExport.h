// Export macro of the graphics data types library (sgdatatypes).
#pragma once

#define SGDATATYPES_API __attribute__((visibility("default")))
