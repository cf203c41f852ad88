// build_database.cpp: makes a database of one message and writes it as a DBC file.
//
//   build_database <file.dbc>

#include <cstring>
#include <iostream>
#include <string>

#include "tabrin.h"

namespace {

// Fills a text field of a record. The rest of it stays 0.
template <std::size_t Size>
void SetText(char (&field)[Size], const char* text) {
    std::strncpy(field, text, Size - 1);
}

bool AppendMessage() {
    CanMessageData message = {};
    message.id = 256;
    message.dlc = 8;
    SetText(message.name, "EngineStatus");
    SetText(message.transmitter, "EngineControl");
    SetText(message.comment, "What everybody needs to know about the engine");
    return TabrinAppendCanMessage(&message);
}

bool AppendSpeed() {
    CanSignalData signal = {};
    SetText(signal.name, "Engine speed");  // written as Engine_speed, with the long name beside it
    SetText(signal.unit, "rpm");
    SetText(signal.receivers, "GearControl,Dashboard");
    signal.startBit = 0;
    signal.length = 16;
    signal.byteOrder = TABRIN_BYTE_ORDER_LITTLE_ENDIAN;
    signal.valueType = TABRIN_VALUE_UNSIGNED;
    signal.factor = 0.25;
    signal.maximum = 16000;
    return TabrinAppendCanSignalToCanMessage(0, &signal);
}

bool AppendState() {
    CanSignalData signal = {};
    SetText(signal.name, "EngineState");
    signal.startBit = 16;
    signal.length = 2;
    signal.byteOrder = TABRIN_BYTE_ORDER_LITTLE_ENDIAN;
    signal.factor = 1;
    signal.maximum = 3;
    const CanSignalEnumData off = {0, "off"};
    const CanSignalEnumData running = {1, "running"};
    return TabrinAppendCanSignalToCanMessage(0, &signal) && TabrinAppendEnumToCanSignal(0, 1, &off) &&
           TabrinAppendEnumToCanSignal(0, 1, &running);
}

bool Write(const std::string& path) {
    std::uint32_t status = 0;
    const auto size = static_cast<std::uint32_t>(path.size() + 1);
    return TabrinWriteDbcFile(path.c_str(), size, TABRIN_ORDER_DATABASE, &status) && status == TABRIN_STATUS_CLOSED;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: build_database <file.dbc>\n";
        return 2;
    }
    TabrinClearData();
    if (!AppendMessage() || !AppendSpeed() || !AppendState() || !Write(argv[1])) {
        std::cerr << argv[1] << ": not written\n";
        return 1;
    }
    return 0;
}
