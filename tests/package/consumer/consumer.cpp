// Prints the name of the first message of a DBC file.
#include <tabrin.h>

#include <iostream>
#include <string>

int main(int argc, char** argv) {
    const std::string path = argc == 2 ? argv[1] : "";
    CanMessageData message = {};
    std::uint32_t status = 0;
    if (!TabrinReadDbcFile(path.c_str(), static_cast<std::uint32_t>(path.size() + 1), &status) ||
        !TabrinGetCanMessageData(0, &message)) {
        return 1;
    }
    std::cout << "C++: " << message.name << "\n";
    return 0;
}
