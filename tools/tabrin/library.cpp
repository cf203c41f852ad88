#include "library.h"

#include "failure.h"
#include "loader.h"

namespace tabrin_tool {

namespace {

template <typename Function>
void Find(void* library, const std::string& path, const char* name, Function& function) {
    function = reinterpret_cast<Function>(FindFunction(library, name));
    if (function == nullptr) {
        throw Failure(path + " is not the library that this program needs: it has no function " + name +
                      ".\nInstall the library and the program from the same package.");
    }
}

Library FindFunctions(void* library, const std::string& path) {
    Library found;
    found.path = path;
    Find(library, path, "TabrinGetLibraryVersion", found.getLibraryVersion);
    Find(library, path, "TabrinReadDbcFile", found.readDbcFile);
    Find(library, path, "TabrinWriteDbcFile", found.writeDbcFile);
    Find(library, path, "TabrinGetDatabaseInfo", found.getDatabaseInfo);
    Find(library, path, "TabrinGetNumCanMessages", found.getNumCanMessages);
    Find(library, path, "TabrinGetCanMessageData", found.getCanMessageData);
    Find(library, path, "TabrinGetNumCanSignalsInCanMessage", found.getNumCanSignals);
    Find(library, path, "TabrinGetCanSignalData", found.getCanSignalData);
    Find(library, path, "TabrinGetCanSignalEnumData", found.getCanSignalEnumData);
    Find(library, path, "TabrinGetNumCanErrors", found.getNumCanErrors);
    Find(library, path, "TabrinGetErrorData", found.getErrorData);
    return found;
}

}  // namespace

Library LoadLibraryOfTabrin() {
    std::string tried;
    for (const LibraryPlace& place : LibraryPlaces()) {
        std::string reason = "no such file";
        void* library = place.path.empty() ? nullptr : LoadLibraryFile(place.path, reason);
        if (library != nullptr) {
            return FindFunctions(library, place.path);
        }
        tried += "  " + place.description + ": " + reason + "\n";
    }
    throw Failure(std::string("the library ") + LibraryFileName() + " cannot be loaded. It was looked for here:\n" +
                  tried + LibraryAdvice());
}

}  // namespace tabrin_tool
