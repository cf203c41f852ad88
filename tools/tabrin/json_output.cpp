#include "json_output.h"

#include <nlohmann/json.hpp>

#include "check.h"
#include "database.h"
#include "words.h"

namespace tabrin_tool {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::uint32_t kExtendedFlag = 0x80000000;

Json MultiplexJson(const CanSignalData& data) {
    switch (data.multiplexKind) {
        case TABRIN_MULTIPLEX_MULTIPLEXOR:
            return {{"kind", "switch"}};
        case TABRIN_MULTIPLEX_MULTIPLEXED:
            return {{"kind", "switched"}, {"value", data.multiplexValue}};
        default:
            return nullptr;
    }
}

Json ReceiversJson(std::string_view receivers) {
    Json list = Json::array();
    while (!receivers.empty()) {
        const std::size_t end = receivers.find(',');
        list.push_back(receivers.substr(0, end));
        receivers.remove_prefix(end == std::string_view::npos ? receivers.size() : end + 1);
    }
    return list;
}

Json ValuesJson(const std::vector<CanSignalEnumData>& values) {
    Json list = Json::array();
    for (const CanSignalEnumData& value : values) {
        list.push_back({{"value", value.value}, {"text", value.text}});
    }
    return list;
}

Json SignalJson(const Signal& signal) {
    const CanSignalData& data = signal.data;
    return {{"name", data.name},
            {"identifierName", data.identifierName},
            {"multiplexing", MultiplexJson(data)},
            {"startBit", data.startBit},
            {"length", data.length},
            {"byteOrder", data.byteOrder == TABRIN_BYTE_ORDER_LITTLE_ENDIAN ? "little" : "big"},
            {"valueType", ValueTypeName(data.valueType)},
            {"factor", data.factor},
            {"offset", data.offset},
            {"minimum", data.minimum},
            {"maximum", data.maximum},
            {"unit", data.unitAsWritten},
            {"receivers", ReceiversJson(data.receivers)},
            {"comment", CommentText(data.comment)},
            {"startValue", static_cast<std::int32_t>(data.startValue)},
            {"inactiveValue", static_cast<std::int32_t>(data.inactiveValue)},
            {"values", ValuesJson(signal.values)}};
}

Json MessageJson(const Message& message) {
    const CanMessageData& data = message.data;
    Json signals = Json::array();
    for (const Signal& signal : message.signals) {
        signals.push_back(SignalJson(signal));
    }
    return {{"name", data.name},
            {"identifierName", data.identifierName},
            {"id", data.id & ~kExtendedFlag},
            {"extended", (data.id & kExtendedFlag) != 0},
            {"length", data.dlc},
            {"transmitter", data.transmitter},
            {"comment", CommentText(data.comment)},
            {"sendType", data.sendType},
            {"cycleTime", data.cycleTime},
            {"signals", std::move(signals)}};
}

Json ErrorsJson(const Library& library, const std::string& file) {
    Json list = Json::array();
    for (const LocatedError& error : LocateErrors(library, file)) {
        list.push_back({{"line", error.line},
                        {"code", error.data.code},
                        {"message", ErrorText(error.data.code)},
                        {"statement", error.data.text}});
    }
    return list;
}

}  // namespace

std::string JsonText(const Library& library, const std::string& file, const std::vector<std::uint32_t>& messages) {
    DatabaseInfo info{};
    library.getDatabaseInfo(&info, sizeof info);
    Json root = {{"file", file}, {"protocol", ProtocolName(info.protocolType)}, {"canFd", info.canFd != 0}};
    Json& list = root["messages"] = Json::array();
    for (const std::uint32_t message : messages) {
        list.push_back(MessageJson(LoadMessage(library, message)));
    }
    root["errors"] = ErrorsJson(library, file);
    constexpr int kIndent = 2;
    // Texts that are not UTF-8 would throw; they can only come from the path.
    return root.dump(kIndent, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace tabrin_tool
