/* dbc_dump: prints what DBC files contain, as far as the library knows it.
 *
 *     dbc_dump [--summary] FILE...
 *
 * Ends with 1 when a file could not be read, with 2 when called wrongly. On Windows, paths beyond ASCII need a UTF-8 code
 * page: the library takes UTF-8 paths, and this program hands on its arguments as they come.
 */
#include <stdio.h>
#include <string.h>

#include "tabrin.h"

/* Bit 31 of an identifier says that it has 29 bits. */
#define EXTENDED_FLAG 0x80000000U

static const char* StatusText(uint32_t status) {
    switch (status) {
        case TABRIN_STATUS_PATH_TOO_LONG:
            return "the path is too long";
        case TABRIN_STATUS_PATH_INVALID:
            return "the path is not valid UTF-8";
        case TABRIN_STATUS_PATH_EMPTY:
            return "the path is empty";
        case TABRIN_STATUS_NOT_OPENED:
            return "the file cannot be opened";
        case TABRIN_STATUS_FAILED:
            return "reading broke off";
        default:
            return "unknown reason";
    }
}

static const char* ErrorText(uint32_t code) {
    switch (code) {
        case TABRIN_ERROR_MESSAGE_ID:
            return "message identifier";
        case TABRIN_ERROR_MESSAGE_NAME:
            return "message name";
        case TABRIN_ERROR_MESSAGE_LENGTH:
            return "message length";
        case TABRIN_ERROR_SIGNAL_NAME:
            return "signal name";
        case TABRIN_ERROR_SIGNAL_BITS:
            return "start bit, length, byte order or sign";
        case TABRIN_ERROR_SIGNAL_SCALE:
            return "factor and offset";
        case TABRIN_ERROR_SIGNAL_RANGE:
            return "minimum and maximum";
        default:
            return "unknown";
    }
}

static const char* Plural(int64_t count) {
    return count == 1 ? "" : "s";
}

/* Prints a text that may have several lines, all of them indented. */
static void PrintIndented(int indent, const char* text) {
    const char* line = text;
    while (*line != '\0') {
        const size_t length = strcspn(line, "\r\n");
        printf("%*s%.*s\n", indent, "", (int)length, line);
        line += length;
        line += strspn(line, "\r\n");
    }
}

static int64_t CountSignals(void) {
    int64_t total = 0;
    uint32_t message = 0;
    uint32_t count = 0;
    while (TabrinGetNumCanSignalsInCanMessage(message, &count)) {
        total += count;
        ++message;
    }
    return total;
}

static void PrintSummary(const char* path) {
    const int64_t messages = TabrinGetNumCanMessages();
    const int64_t signals = CountSignals();
    const int64_t errors = TabrinGetNumCanErrors();
    printf("%s: %lld message%s, %lld signal%s, %lld error%s\n", path, (long long)messages, Plural(messages),
           (long long)signals, Plural(signals), (long long)errors, Plural(errors));
}

static void PrintDatabaseInfo(void) {
    static const char* const kProtocols[] = {"none", "J1939", "NMEA 2000"};
    DatabaseInfo info = {0, 0};
    TabrinGetDatabaseInfo(&info, sizeof info);
    printf("protocol: %s, CAN FD: %s\n", info.protocolType <= 2 ? kProtocols[info.protocolType] : "unknown",
           info.canFd != 0 ? "yes" : "no");
}

static void PrintMessageHead(const CanMessageData* message) {
    const uint32_t id = message->id & ~EXTENDED_FLAG;
    printf("\n%s  ", message->name);
    if ((message->id & EXTENDED_FLAG) != 0) {
        printf("0x%08lX (%lu, 29 bits)", (unsigned long)id, (unsigned long)id);
    } else {
        printf("0x%03lX (%lu)", (unsigned long)id, (unsigned long)id);
    }
    printf(", %lu byte%s, from %s", (unsigned long)message->dlc, Plural(message->dlc),
           message->transmitter[0] != '\0' ? message->transmitter : "nobody");
    if (message->sendType[0] != '\0') {
        printf(", %s", message->sendType);
    }
    if (message->cycleTime != 0) {
        printf(", every %lu ms", (unsigned long)message->cycleTime);
    }
    printf("\n");
    PrintIndented(2, message->comment);
}

/* "M" for the switch of a multiplexed message, "m<value>" for what it switches, as in the file. */
static void FormatMultiplexing(const CanSignalData* signal, char* text, size_t size) {
    text[0] = '\0';
    if (signal->multiplexKind == TABRIN_MULTIPLEX_MULTIPLEXOR) {
        snprintf(text, size, "M");
    } else if (signal->multiplexKind == TABRIN_MULTIPLEX_MULTIPLEXED) {
        snprintf(text, size, "m%lu", (unsigned long)signal->multiplexValue);
    }
}

/* "24|16@1+", as in the file; the types that the file tells elsewhere follow in words. */
static void FormatBits(const CanSignalData* signal, char* text, size_t size) {
    static const char* const kTypes[] = {"+", "-", "- float", "- double"};
    snprintf(text, size, "%lu|%lu@%lu%s", (unsigned long)signal->startBit, (unsigned long)signal->length,
             (unsigned long)signal->byteOrder, signal->valueType <= 3 ? kTypes[signal->valueType] : "?");
}

static void PrintValueDescriptions(uint32_t message, uint32_t signal, uint32_t count) {
    uint32_t index;
    CanSignalEnumData description;
    for (index = 0; index < count; ++index) {
        if (TabrinGetCanSignalEnumData(message, signal, index, &description)) {
            printf("        %ld = %s\n", (long)description.value, description.text);
        }
    }
}

static void PrintSignal(const CanSignalData* signal, int nameWidth) {
    char bits[64];
    char multiplexing[16];
    char scale[64];
    char range[64];
    FormatBits(signal, bits, sizeof bits);
    FormatMultiplexing(signal, multiplexing, sizeof multiplexing);
    snprintf(scale, sizeof scale, "(%.12g,%.12g)", signal->factor, signal->offset);
    snprintf(range, sizeof range, "[%.12g|%.12g]", signal->minimum, signal->maximum);
    printf("  %-*s %-4s %-15s %-14s %-18s %s%s%s%s\n", nameWidth, signal->name, multiplexing, bits, scale, range,
           signal->unitAsWritten, signal->unitAsWritten[0] != '\0' ? " " : "",
           signal->receivers[0] != '\0' ? "to " : "", signal->receivers);
}

static int LongestSignalName(uint32_t message, uint32_t count) {
    size_t longest = 0;
    uint32_t index;
    CanSignalData signal;
    for (index = 0; index < count; ++index) {
        if (TabrinGetCanSignalData(message, index, &signal) && strlen(signal.name) > longest) {
            longest = strlen(signal.name);
        }
    }
    return (int)longest;
}

static void PrintMessage(uint32_t index) {
    CanMessageData message;
    CanSignalData signal;
    uint32_t i;
    int nameWidth;
    if (!TabrinGetCanMessageData(index, &message)) {
        return;
    }
    PrintMessageHead(&message);
    nameWidth = LongestSignalName(index, message.numSignals);
    for (i = 0; i < message.numSignals; ++i) {
        if (TabrinGetCanSignalData(index, i, &signal)) {
            PrintSignal(&signal, nameWidth);
            PrintIndented(8, signal.comment);
            PrintValueDescriptions(index, i, signal.numValueDescriptions);
        }
    }
}

static void PrintErrors(void) {
    uint32_t index;
    CanErrorData error;
    for (index = 0; TabrinGetErrorData(index, &error); ++index) {
        printf("%sline %lu: error %lu (%s)\n", index == 0 ? "\nLeft out:\n" : "", (unsigned long)error.line,
               (unsigned long)error.code, ErrorText(error.code));
        PrintIndented(8, error.text);
    }
}

static bool DumpFile(const char* path, bool summaryOnly) {
    uint32_t index;
    uint32_t status = TABRIN_STATUS_FAILED;
    if (!TabrinReadDbcFile(path, (uint32_t)strlen(path) + 1, &status)) {
        fprintf(stderr, "%s: %s (status %lu)\n", path, StatusText(status), (unsigned long)status);
        return false;
    }
    PrintSummary(path);
    if (!summaryOnly) {
        PrintDatabaseInfo();
        for (index = 0; index < TabrinGetNumCanMessages(); ++index) {
            PrintMessage(index);
        }
        PrintErrors();
    }
    return true;
}

int main(int argc, char** argv) {
    const bool summaryOnly = argc > 1 && strcmp(argv[1], "--summary") == 0;
    const int firstFile = summaryOnly ? 2 : 1;
    bool allRead = true;
    int i;
    if (firstFile >= argc) {
        fprintf(stderr, "usage: %s [--summary] FILE...\n", argc > 0 ? argv[0] : "dbc_dump");
        return 2;
    }
    for (i = firstFile; i < argc; ++i) {
        if (!summaryOnly && i > firstFile) {
            printf("\n");
        }
        allRead = DumpFile(argv[i], summaryOnly) && allRead;
    }
    return allRead ? 0 : 1;
}
