// Marks what the library exports; everything else is hidden.
#pragma once

#define ORB_EXPORT __attribute__((visibility("default")))
