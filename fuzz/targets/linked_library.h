// The exported functions as they are linked into a target.
#pragma once

#include "fuzz/abi/library_functions.h"

namespace tabrin_fuzz {

inline constexpr LibraryFunctions kLinkedLibrary = {TabrinGetLibraryVersion,
                                                    TabrinReadDbcFile,
                                                    TabrinWriteDbcFile,
                                                    TabrinClearData,
                                                    TabrinGetDatabaseInfo,
                                                    TabrinSetDatabaseInfo,
                                                    TabrinGetNumCanMessages,
                                                    TabrinAppendCanMessage,
                                                    TabrinGetCanMessageData,
                                                    TabrinGetNumCanSignalsInCanMessage,
                                                    TabrinAppendCanSignalToCanMessage,
                                                    TabrinGetCanSignalData,
                                                    TabrinGetNumEnumsInCanSignal,
                                                    TabrinAppendEnumToCanSignal,
                                                    TabrinGetCanSignalEnumData,
                                                    TabrinGetNumCanErrors,
                                                    TabrinGetErrorData};

}  // namespace tabrin_fuzz
