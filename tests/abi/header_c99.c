/* The binary interface, pinned as a C99 compiler sees it. Compiling this file is the test. */
#include "tabrin.h"

/* C99 has no static assertion: a broken expectation becomes an array of negative size. */
#define PIN(name, condition) typedef char pin_##name[(condition) ? 1 : -1]
#define PIN_SIZE(record, bytes) PIN(record##_size, sizeof(record) == (bytes))
#define PIN_FIELD(record, field, at, bytes) \
    PIN(record##_##field, offsetof(record, field) == (at) && sizeof(((record*)0)->field) == (bytes))
#define PIN_CODE(code, number) PIN(code, (code) == (number))

#include "header_pins.h"
