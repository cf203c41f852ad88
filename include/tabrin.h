/* Tabrin 1.31: CAN bus databases in the DBC text format, read and written through seventeen flat functions.
 *
 * This header is the whole interface and its manual. It is clean C99 and clean C++, needs nothing but the C
 * library, and describes a binary interface: the records below may be declared again in any language from the
 * byte offsets given here.
 *
 * THE DATABASE. The library holds exactly one database. It exists from the moment the library is loaded until it
 * is unloaded, so there are no handles. A database is a sequence of messages, each with a sequence of signals,
 * each with its value descriptions; beside it stand a small block of database information and the list of errors
 * that the last read found.
 *
 *   Reading:   TabrinReadDbcFile (clears first), then any of the getters.
 *   Building:  TabrinClearData, the TabrinAppend... functions, TabrinSetDatabaseInfo, then TabrinWriteDbcFile.
 *   Both mix freely: a database that was read can be appended to and written.
 *
 * RESULTS. Functions that return `bool` return a one-byte 1 (done) or 0 (not done; the database is as it was, but
 * for the two file functions: see there). No function throws, prints, ends the process or changes a setting of the
 * process, and no locale, environment variable or current folder influences a result (the rounding of floating-point
 * numbers is expected to be to nearest, as it is unless a program changes it). Running out of memory makes a call
 * return 0. (What the system itself does stays its own business: on Linux, a program that is not prepared for
 * SIGXFSZ or SIGPIPE is ended by it when a file that it writes grows too large or its pipe has no reader.)
 *
 * INDICES are 32-bit unsigned and start at 0. An index equal to the current count fails. Messages and signals keep
 * their index until the database is cleared or read again; value descriptions are ordered by their signed value,
 * so that appending one can move others.
 *
 * TEXTS cross the boundary as NUL-terminated UTF-8 in character arrays of fixed size.
 *   Out: a field of N bytes receives at most N-1 bytes and one NUL; a longer text is cut in front of the character
 *        that does not fit whole. Nothing behind the NUL is touched, nor are padding and reserved bytes.
 *   In:  a field ends at its first NUL; without one its first N-1 bytes are taken. The text must be valid UTF-8,
 *        otherwise the call fails. One exception: a character cut off by the end of the text is dropped. The byte that
 *        begins it decides: the last byte from 0xC0, the last but one from 0xE0 or the last but two from 0xF0 upwards,
 *        whatever follows it.
 *
 * OWNERSHIP. Every record and buffer is the caller's. The library copies into it or out of it during the call and
 * keeps no pointer. A pointer that a function describes as checked may be NULL (the call then fails); any other
 * pointer must be valid.
 *
 * THREADS. None are started and nothing is locked: a program that uses the library from several threads must see to
 * it that only one call runs at a time. This holds for the getters too.
 */
#ifndef TABRIN_H
#define TABRIN_H

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#if defined(_WIN32) && defined(TABRIN_BUILD)
#define TABRIN_API __declspec(dllexport)
#elif defined(_WIN32)
#define TABRIN_API __declspec(dllimport)
#elif defined(__GNUC__)
#define TABRIN_API __attribute__((visibility("default")))
#else
#define TABRIN_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---------------------------------------------------------------------------------------------------------------
 * Codes. Their values never change. They are constants and not types: records and functions carry them as uint32_t,
 * and a value outside a list is kept and handed back as it was given.
 */

/* What became of a file: written through the `status` argument of the two file functions. */
enum TabrinFileStatus {
    TABRIN_STATUS_READING = 0,       /* open for reading; never the final word of a call */
    TABRIN_STATUS_WRITING = 1,       /* open for writing; never the final word of a call */
    TABRIN_STATUS_CLOSED = 2,        /* success; from TabrinWriteDbcFile with 0: the database holds no messages */
    TABRIN_STATUS_PATH_TOO_LONG = 3, /* the path buffer size is 261 or more */
    TABRIN_STATUS_PATH_INVALID = 4,  /* the path is not valid UTF-8, or a buffer of one byte holds no NUL */
    TABRIN_STATUS_PATH_EMPTY = 5,    /* the path is empty or NULL */
    TABRIN_STATUS_NOT_OPENED = 6,    /* the file could not be opened */
    TABRIN_STATUS_FAILED = 8,        /* reading, writing or closing failed on the way, or memory ran out */
    TABRIN_STATUS_END_OF_FILE = 9    /* everything was read; never the final word of a call */
};

/* Which step of a BO_ (0 to 2) or SG_ (3 to 6) statement could not be read: `code` of CanErrorData. */
enum TabrinParseError {
    TABRIN_ERROR_MESSAGE_ID = 0,      /* BO_: no plain decimal identifier followed by a blank */
    TABRIN_ERROR_MESSAGE_NAME = 1,    /* BO_: no ":" or no name in front of it */
    TABRIN_ERROR_MESSAGE_LENGTH = 2,  /* BO_: no data length behind the ":", or one above 4294967295 */
    TABRIN_ERROR_SIGNAL_NAME = 3,     /* SG_: no ":", or nothing behind it. The name may be empty */
    TABRIN_ERROR_SIGNAL_BITS = 4,     /* SG_: start bit, length, byte order or sign */
    TABRIN_ERROR_SIGNAL_SCALE = 5,    /* SG_: factor and offset, "(1,0)" */
    TABRIN_ERROR_SIGNAL_RANGE = 6     /* SG_: minimum and maximum, "[0|255]" */
};

/* `protocolType` of DatabaseInfo. */
enum TabrinProtocolType {
    TABRIN_PROTOCOL_NONE = 0,
    TABRIN_PROTOCOL_J1939 = 1,   /* the attribute "J1939PGN" is 1 */
    TABRIN_PROTOCOL_NMEA2000 = 2 /* the attribute "IsNMEA" is 1; it wins where both are */
};

/* `multiplexKind` of CanSignalData. */
enum TabrinMultiplexKind {
    TABRIN_MULTIPLEX_NONE = 0,        /* a plain signal, in every frame of its message */
    TABRIN_MULTIPLEX_MULTIPLEXOR = 1, /* the switch: "M" in the file */
    TABRIN_MULTIPLEX_MULTIPLEXED = 2  /* in the frame only where the switch equals multiplexValue: "m<value>" */
};

/* `byteOrder` of CanSignalData: the digit behind "@" in the file. */
enum TabrinByteOrder {
    TABRIN_BYTE_ORDER_BIG_ENDIAN = 0,   /* Motorola; start bit is the most significant bit */
    TABRIN_BYTE_ORDER_LITTLE_ENDIAN = 1 /* Intel; start bit is the least significant bit */
};

/* `valueType` of CanSignalData: how the raw bits are to be understood. */
enum TabrinValueType {
    TABRIN_VALUE_UNSIGNED = 0,
    TABRIN_VALUE_SIGNED = 1, /* two's complement */
    TABRIN_VALUE_FLOAT = 2,  /* IEEE 754, 32 bits: only with length 32 */
    TABRIN_VALUE_DOUBLE = 3  /* IEEE 754, 64 bits: only with length 64 */
};

/* `messageOrder` of TabrinWriteDbcFile; any other value means TABRIN_ORDER_DATABASE too. */
enum TabrinMessageOrder {
    TABRIN_ORDER_IDENTIFIER = 0, /* by identifier as an unsigned number, the largest first */
    TABRIN_ORDER_NAME = 1,       /* by identifierName, byte by byte, ascending; "A" comes before "AB" */
    TABRIN_ORDER_DATABASE = 2    /* as read or appended */
};

/* ---------------------------------------------------------------------------------------------------------------
 * Records. Natural alignment, little-endian, no pointers. The number in front of each field is its byte offset.
 */

/* One error of the last read (264 bytes): a BO_ or SG_ statement that was left out. */
typedef struct CanErrorData {
    uint32_t code;  /*   0  TABRIN_ERROR_...: the step that failed */
    uint32_t line;  /*   4  lines read when the statement was complete, less one. For a statement on one line with the
                            next statement on the line behind it, this is its own line number, counted from 1; empty
                            lines behind it raise the number, the last statement of a file is reported one lower */
    char text[256]; /*   8  the statement without its last character (usually the line end), at most 254 bytes */
} CanErrorData;

/* Properties of the whole database (8 bytes). */
typedef struct DatabaseInfo {
    uint32_t protocolType; /* 0  TABRIN_PROTOCOL_... */
    uint32_t canFd;        /* 4  1: CAN FD, from the attribute "BusType" with the value "CAN FD"; else 0. A file without
                                   that attribute, and clearing, leave it as it was */
} DatabaseInfo;

/* One message, for reading and for appending (640 bytes). Fields marked "out" are ignored when appending. */
typedef struct CanMessageData {
    uint32_t id;               /*   0  as written behind BO_, flag bits included: bit 31 marks a 29-bit identifier */
    char identifierName[33];   /*   4  out: the name as a DBC identifier: at most 32 letters, digits and "_", not
                                       beginning with a digit; empty only where the long name is. This is the name
                                       that files carry */
    uint8_t reserved37[3];     /*  37  padding, never touched */
    uint32_t dlc;              /*  40  data length in bytes; any value */
    char name[256];            /*  44  the long name: any text. Read from the statement or from the attribute
                                       "Kestrune_Msg_Name" */
    char transmitter[33];      /* 300  sending node; empty: none. Made an identifier when appended */
    uint8_t reserved333[3];    /* 333  padding, never touched */
    uint32_t numSignals;       /* 336  out: number of signals */
    uint8_t reserved340[4];    /* 340  never touched */
    char comment[256];         /* 344  quotes in it carry a backslash: say \"hi\". They get one when appended */
    char sendType[33];         /* 600  out: name of the value of the attribute "GenMsgSendType", as an identifier */
    uint8_t reserved633[3];    /* 633  padding, never touched */
    uint32_t cycleTime;        /* 636  out: value of the attribute "GenMsgCycleTime", in milliseconds by custom */
} CanMessageData;

/* One signal, for reading and for appending (944 bytes). Fields marked "out" are ignored when appending. */
typedef struct CanSignalData {
    char identifierName[33];       /*   0  out: the name as a DBC identifier, as for messages */
    char name[256];                /*  33  the long name: any text. Read from the statement or from the attribute
                                           "Kestrune_Sig_Name" */
    char unit[33];                 /* 289  the unit with one "_" for each character beyond ASCII; this is written */
    char receivers[256];           /* 322  receiving nodes joined by ",", without blanks. Made identifiers when
                                           appended */
    char comment[256];             /* 578  as for messages */
    uint8_t reserved834[2];        /* 834  padding, never touched */
    uint32_t multiplexKind;        /* 836  TABRIN_MULTIPLEX_... */
    uint32_t multiplexValue;       /* 840  value of the switch for a multiplexed signal, 0 for others; kept as given
                                           when appended */
    uint32_t startBit;             /* 844  as written in the file */
    uint32_t length;               /* 848  in bits */
    uint32_t byteOrder;            /* 852  TABRIN_BYTE_ORDER_... */
    uint32_t valueType;            /* 856  TABRIN_VALUE_...; appended as float with a length other than 32, or as
                                           double with one other than 64, it becomes TABRIN_VALUE_SIGNED */
    uint8_t reserved860[4];        /* 860  padding, never touched */
    double factor;                 /* 864  physical value = raw value * factor + offset, in `unit` */
    double offset;                 /* 872  */
    double minimum;                /* 880  physical; swapped with `maximum` when a file has them the wrong way round, */
    double maximum;                /* 888  kept as given when appended */
    uint32_t numValueDescriptions; /* 896  out: number of value descriptions */
    uint32_t startValue;           /* 900  raw value from the attribute "GenSigStartValue"; the bits of a signed one */
    uint32_t inactiveValue;        /* 904  raw value from the attribute "GenSigInactiveValue"; likewise */
    char unitAsWritten[33];        /* 908  out: the unit as it stood in the file (without blanks around it) or in
                                           `unit` when appended */
    uint8_t reserved941[3];        /* 941  padding, never touched */
} CanSignalData;

/* One value description of a signal (260 bytes). */
typedef struct CanSignalEnumData {
    int32_t value;  /* 0  raw value */
    char text[256]; /* 4  its description */
} CanSignalEnumData;

/* ---------------------------------------------------------------------------------------------------------------
 * Library
 */

/* The version of the library: 1.31. Cannot fail. */
TABRIN_API float TabrinGetLibraryVersion(void);

/* ---------------------------------------------------------------------------------------------------------------
 * Files
 *
 * `path` is UTF-8 in a buffer of `pathBufferSize` bytes, at most 260: it ends at its first NUL, else one byte in
 * front of the end of the buffer. `status` receives a TABRIN_STATUS_... code and may be NULL.
 *
 * Opening waits for nobody: on Linux, a FIFO without a writer reads as an empty file, and one without a reader cannot
 * be opened for writing.
 */

/* Clears the database and reads a DBC file into it: messages, signals, multiplexing, value descriptions, float types,
 * comments on messages and signals, and the nine attributes named above. Everything else in a file is passed over. Line
 * ends may be LF or CR LF; bytes that are not UTF-8 become "_"; control characters that are no blanks are left out. The
 * CAN FD flag stays as it was when the file says nothing of the bus type.
 *
 * Returns 1 with status 2 when the file was read to its end, also when statements in it were faulty: see
 * TabrinGetErrorData. Returns 0 with status 3 to 6 when the file was not opened (the database is then empty), and
 * with status 8 when reading broke off (what was read until then stays). Takes time in proportion to the file and to
 * what its statements change: one that names an identifier which many messages share changes all of them. */
TABRIN_API bool TabrinReadDbcFile(const char* path, uint32_t pathBufferSize, uint32_t* status);

/* Writes the database as a DBC file with CR LF line ends; a file of that name is replaced. Send types, cycle
 * times, start and inactive values are not written.
 *
 * Signals of one message that share an identifier are told apart first, by suffixes _0000, _0001, ..., which they
 * keep, also when writing fails after the file was opened. Only names that were cut to 27 characters to make room
 * for the suffix can be numbered anew by the next writing, together with others that are equal in their first 27
 * characters. A suffixed name is not compared with names that happen to end like one.
 *
 * Returns 1 with status 2 when everything was written, and 1 with status 8 when a failure was noticed only in
 * closing: then the end of the file may be missing. Returns 0 with status 2 when there are no messages (the file
 * is not touched), with status 3 to 6 when the file was not opened, and with status 8 when a write failed; what
 * was written until then stays. */
TABRIN_API bool TabrinWriteDbcFile(const char* path, uint32_t pathBufferSize, uint32_t messageOrder, uint32_t* status);

/* ---------------------------------------------------------------------------------------------------------------
 * Database information
 */

/* Empties the database: no messages, no errors, protocol type 0. The CAN FD flag stays as it is. Returns 1. */
TABRIN_API bool TabrinClearData(void);

/* Copies the first min(size, 8) bytes of the DatabaseInfo to `dst` (not checked). Returns 1. */
TABRIN_API bool TabrinGetDatabaseInfo(void* dst, size_t size);

/* Replaces the first min(size, 8) bytes of the DatabaseInfo by those at `src` (not checked). Returns 1. */
TABRIN_API bool TabrinSetDatabaseInfo(const void* src, size_t size);

/* ---------------------------------------------------------------------------------------------------------------
 * Messages
 */

/* The number of messages. Cannot fail. */
TABRIN_API int64_t TabrinGetNumCanMessages(void);

/* Appends a message without signals, from `id`, `dlc`, `name`, `transmitter` and `comment` of the record.
 * Returns 0 when `data` is NULL or one of the texts is not valid UTF-8. Its index is the count before the call. */
TABRIN_API bool TabrinAppendCanMessage(const CanMessageData* data);

/* Fills the record with message number `message`. Returns 0 when the index is out of range or `data` is NULL. */
TABRIN_API bool TabrinGetCanMessageData(uint32_t message, CanMessageData* data);

/* ---------------------------------------------------------------------------------------------------------------
 * Signals
 */

/* Writes the number of signals of a message to `count` (not checked). Returns 0, and writes nothing, when the index is
 * out of range. */
TABRIN_API bool TabrinGetNumCanSignalsInCanMessage(uint32_t message, uint32_t* count);

/* Appends a signal to a message, from all fields of the record but those marked "out". Returns 0 when the index is out
 * of range, `data` is NULL or one of the texts is not valid UTF-8. A message holds at most 10000 signals: a further
 * one is dropped, still with 1. */
TABRIN_API bool TabrinAppendCanSignalToCanMessage(uint32_t message, const CanSignalData* data);

/* Fills the record with signal number `signal` of a message. Returns 0 when an index is out of range or `data` is
 * NULL. */
TABRIN_API bool TabrinGetCanSignalData(uint32_t message, uint32_t signal, CanSignalData* data);

/* ---------------------------------------------------------------------------------------------------------------
 * Value descriptions
 */

/* Writes the number of value descriptions of a signal to `count` (not checked). Returns 0, and writes nothing, when an
 * index is out of range. */
TABRIN_API bool TabrinGetNumEnumsInCanSignal(uint32_t message, uint32_t signal, uint32_t* count);

/* Adds a value description to a signal. A value that has one already keeps it and gets the new text behind it, joined
 * by " - ". Returns 0 when an index is out of range, `data` is NULL or the text is not valid UTF-8. */
TABRIN_API bool TabrinAppendEnumToCanSignal(uint32_t message, uint32_t signal, const CanSignalEnumData* data);

/* Fills the record with value description number `enumIndex` of a signal, counted in ascending order of the values.
 * Returns 0 when an index is out of range or `data` is NULL. Asking for one after the other is the fast way. */
TABRIN_API bool TabrinGetCanSignalEnumData(uint32_t message, uint32_t signal, uint32_t enumIndex,
                                           CanSignalEnumData* data);

/* ---------------------------------------------------------------------------------------------------------------
 * Errors of the last read
 */

/* The number of errors that the last TabrinReadDbcFile found, one for each BO_ or SG_ statement that was faulty. No
 * error tells of SG_ statements that are passed over because they do not follow a BO_ or SG_ that was accepted (a fault
 * takes all signals up to the next BO_ with it), nor of signals beyond the 10000th of a message. Cannot fail. */
TABRIN_API int64_t TabrinGetNumCanErrors(void);

/* Fills the record with error number `index`, in the order of the file. Returns 0 when the index is out of range or
 * `data` is NULL. */
TABRIN_API bool TabrinGetErrorData(uint32_t index, CanErrorData* data);

#ifdef __cplusplus
}
#endif

#endif
