/* dbc_dump: prints what DBC files contain, as far as the library knows it, and writes them out again on request.
 *
 *     dbc_dump [--summary] FILE...
 *     dbc_dump [--summary] --order id|name|file [-o PATH] FILE
 *
 * Ends with 1 when a file could not be read or written, with 2 when called wrongly. On Windows, paths beyond ASCII need
 * a UTF-8 code page: the library takes UTF-8 paths, and this program hands on its arguments as they come.
 */
#include <stdio.h>
#include <string.h>

#include "tabrin.h"

/* Bit 31 of an identifier says that it has 29 bits. */
#define EXTENDED_FLAG 0x80000000U

static const char kUsage[] =
    "usage: dbc_dump [--summary] FILE...\n"
    "       dbc_dump [--summary] --order id|name|file [-o PATH] FILE\n"
    "\n"
    "Prints the messages and signals of DBC files, and the statements that could not be read.\n"
    "\n"
    "  --summary     only one line for each file: how many messages, signals and errors it has\n"
    "  --order WHAT  also write what was read as a DBC file, with the messages in the order of\n"
    "                their identifiers, the largest first (id), of their names (name) or as in\n"
    "                the file (file)\n"
    "  -o PATH       where to write it; otherwise to the current directory, as engine.id.out.dbc\n"
    "                for engine.dbc in the order of identifiers\n"
    "  --help        print this\n";

/* The longest path that the library takes, with its NUL. */
#define PATH_SIZE 260

typedef struct Options {
    bool help;
    bool summary;
    const char* order;  /* as given; NULL: nothing is written */
    const char* output; /* NULL: made from the name of the input */
    char** files;
    int fileCount;
} Options;

static const char* StatusText(uint32_t status) {
    switch (status) {
        case TABRIN_STATUS_CLOSED:
            return "there are no messages to write";
        case TABRIN_STATUS_PATH_TOO_LONG:
            return "the path is too long";
        case TABRIN_STATUS_PATH_INVALID:
            return "the path is not valid UTF-8";
        case TABRIN_STATUS_PATH_EMPTY:
            return "the path is empty";
        case TABRIN_STATUS_NOT_OPENED:
            return "the file cannot be opened";
        case TABRIN_STATUS_FAILED:
            return "reading or writing broke off";
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
    uint32_t status = TABRIN_STATUS_FAILED;
    if (!TabrinReadDbcFile(path, (uint32_t)strlen(path) + 1, &status)) {
        fprintf(stderr, "%s: %s (status %lu)\n", path, StatusText(status), (unsigned long)status);
        return false;
    }
    PrintSummary(path);
    if (!summaryOnly) {
        uint32_t index;
        PrintDatabaseInfo();
        for (index = 0; index < TabrinGetNumCanMessages(); ++index) {
            PrintMessage(index);
        }
        PrintErrors();
    }
    return true;
}

/* Returns false for a word that is none of the three. */
static bool OrderFromText(const char* text, uint32_t* order) {
    static const char* const kOrders[] = {"id", "name", "file"}; /* by their TABRIN_ORDER_... */
    for (*order = 0; *order < 3; ++*order) {
        if (strcmp(text, kOrders[*order]) == 0) {
            return true;
        }
    }
    return false;
}

/* "engine.id.out.dbc" for "somewhere/engine.dbc". Returns false when that is too long. */
static bool MakeOutputPath(const char* input, const char* order, char* path, size_t size) {
    const char* name = input;
    size_t length;
    const char* c;
    int needed;
    for (c = input; *c != '\0'; ++c) {
        if (*c == '/' || *c == '\\') {
            name = c + 1;
        }
    }
    length = strlen(name);
    if (length > 4 && strcmp(name + length - 4, ".dbc") == 0) {
        length -= 4;
    }
    needed = snprintf(path, size, "%.*s.%s.out.dbc", (int)length, name, order);
    return needed >= 0 && (size_t)needed < size;
}

/* Writes what the library holds. With status 8 the file is there, but not all of it; so it is also when the function of
 * the library returns true, which means that the last line was lost. */
static bool WriteFileInOrder(const char* input, const Options* options) {
    char made[PATH_SIZE];
    const char* path = options->output;
    uint32_t order = TABRIN_ORDER_DATABASE;
    uint32_t status = TABRIN_STATUS_FAILED;
    OrderFromText(options->order, &order);
    if (path == NULL) {
        if (!MakeOutputPath(input, options->order, made, sizeof made)) {
            fprintf(stderr, "%s: %s\n", input, "the name of the file to write would be too long");
            return false;
        }
        path = made;
    }
    if (!TabrinWriteDbcFile(path, (uint32_t)strlen(path) + 1, order, &status) || status != TABRIN_STATUS_CLOSED) {
        fprintf(stderr, "%s: not written: %s (status %lu)\n", path, StatusText(status), (unsigned long)status);
        return false;
    }
    printf("%s: %lld message%s written, order: %s\n", path, (long long)TabrinGetNumCanMessages(),
           Plural(TabrinGetNumCanMessages()), options->order);
    return true;
}

/* Returns false when the arguments make no sense. */
static bool ParseOptions(int argc, char** argv, Options* options) {
    uint32_t order;
    int i;
    for (i = 1; i < argc && argv[i][0] == '-'; ++i) {
        if (strcmp(argv[i], "--summary") == 0) {
            options->summary = true;
        } else if (strcmp(argv[i], "--help") == 0) {
            options->help = true;
        } else if (strcmp(argv[i], "--order") == 0 && i + 1 < argc && OrderFromText(argv[i + 1], &order)) {
            options->order = argv[++i];
        } else if (strcmp(argv[i], "-o") == 0 && i + 1 < argc) {
            options->output = argv[++i];
        } else {
            return false;
        }
    }
    options->files = argv + i;
    options->fileCount = argc - i;
    if (options->help) {
        return true;
    }
    return options->fileCount > 0 && (options->order == NULL || options->fileCount == 1) &&
           (options->output == NULL || options->order != NULL);
}

int main(int argc, char** argv) {
    Options options = {false, false, NULL, NULL, NULL, 0};
    bool done = true;
    int i;
    if (!ParseOptions(argc, argv, &options)) {
        fputs(kUsage, stderr);
        return 2;
    }
    if (options.help) {
        fputs(kUsage, stdout);
        return 0;
    }
    for (i = 0; i < options.fileCount; ++i) {
        if (!options.summary && i > 0) {
            printf("\n");
        }
        done = DumpFile(options.files[i], options.summary) && done;
    }
    if (options.order != NULL && done) {
        if (!options.summary) {
            printf("\n");
        }
        done = WriteFileInOrder(options.files[0], &options);
    }
    return done ? 0 : 1;
}
