// The exported functions as the checks call them: linked in by the fuzz targets, loaded at run time by the tests.
#pragma once

#include "tabrin.h"

namespace tabrin_fuzz {

struct LibraryFunctions {
    decltype(&TabrinGetLibraryVersion) GetLibraryVersion;
    decltype(&TabrinReadDbcFile) ReadDbcFile;
    decltype(&TabrinWriteDbcFile) WriteDbcFile;
    decltype(&TabrinClearData) ClearData;
    decltype(&TabrinGetDatabaseInfo) GetDatabaseInfo;
    decltype(&TabrinSetDatabaseInfo) SetDatabaseInfo;
    decltype(&TabrinGetNumCanMessages) GetNumCanMessages;
    decltype(&TabrinAppendCanMessage) AppendCanMessage;
    decltype(&TabrinGetCanMessageData) GetCanMessageData;
    decltype(&TabrinGetNumCanSignalsInCanMessage) GetNumCanSignalsInCanMessage;
    decltype(&TabrinAppendCanSignalToCanMessage) AppendCanSignalToCanMessage;
    decltype(&TabrinGetCanSignalData) GetCanSignalData;
    decltype(&TabrinGetNumEnumsInCanSignal) GetNumEnumsInCanSignal;
    decltype(&TabrinAppendEnumToCanSignal) AppendEnumToCanSignal;
    decltype(&TabrinGetCanSignalEnumData) GetCanSignalEnumData;
    decltype(&TabrinGetNumCanErrors) GetNumCanErrors;
    decltype(&TabrinGetErrorData) GetErrorData;
};

// From anything that has members of these names.
template <typename Library>
LibraryFunctions FunctionsOf(const Library& library) {
    return {library.GetLibraryVersion,
            library.ReadDbcFile,
            library.WriteDbcFile,
            library.ClearData,
            library.GetDatabaseInfo,
            library.SetDatabaseInfo,
            library.GetNumCanMessages,
            library.AppendCanMessage,
            library.GetCanMessageData,
            library.GetNumCanSignalsInCanMessage,
            library.AppendCanSignalToCanMessage,
            library.GetCanSignalData,
            library.GetNumEnumsInCanSignal,
            library.AppendEnumToCanSignal,
            library.GetCanSignalEnumData,
            library.GetNumCanErrors,
            library.GetErrorData};
}

}  // namespace tabrin_fuzz
