/// The mark of what the shared library exports. Everything without it is hidden.
#pragma once

#define QRV_API __attribute__((visibility("default")))
