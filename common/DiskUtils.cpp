#include "common/DiskUtils.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include "common/ChunkedContent.h"
#include "common/PubSubException.h"

namespace zorvane::pubsub {

namespace {

// Opens path for reading. A directory opens like a file on Linux and then
// reads as nothing; the user meant a file, so it counts as missing.
std::ifstream openForReading(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::error_code ignored;
    if (!in.is_open() || std::filesystem::is_directory(path, ignored)) {
        throw PubSubException("File not found. " + path);
    }
    return in;
}

}  // namespace

std::string DiskUtils::readFile(const std::string& path) {
    std::ifstream in = openForReading(path);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::vector<std::string> DiskUtils::readFileAsList(const std::string& path) {
    std::ifstream in = openForReading(path);
    std::vector<std::string> lines;
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        lines.push_back(line);
    }
    return lines;
}

void DiskUtils::writeFile(const std::string& path, const std::string& contents) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (!out.is_open()) {
        throw PubSubException("File not able to be open. " + path);
    }
    out.write(contents.data(), static_cast<std::streamsize>(contents.size()));
}

void DiskUtils::trimSpaces(std::string& text) {
    const std::string::size_type first = text.find_first_not_of(" \t");
    if (first == std::string::npos) {
        text.clear();
        return;
    }
    const std::string::size_type last = text.find_last_not_of(" \t");
    text = text.substr(first, last - first + 1);
}

std::vector<SdmProperties> DiskUtils::genSdmPropsListFromFiles(
    const std::vector<std::string>& files) {
    std::vector<SdmProperties> list;
    list.reserve(files.size());
    int id = PUBSUB_SDM_ID_USER_DEF_BASE;
    for (const std::string& file : files) {
        SdmProperties props;
        props.setSdmMsgId(id++);
        props.parseInputFile(file);
        list.push_back(std::move(props));
    }
    return list;
}

SdmProperties DiskUtils::genSdmPropsListFromString(const std::vector<std::string>& lines) {
    SdmProperties props;
    props.setSdmMsgId(PUBSUB_SDM_ID_USER_DEF_BASE);
    props.parseInputString(lines);
    return props;
}

std::string DiskUtils::generateXmlBody(INT32 size) {
    if (size < MIN_XML_BODY_SIZE) {
        throw PubSubException("GenMsgList: Payload size " + std::to_string(size) +
                              " is too short.  Minimum is " + std::to_string(MIN_XML_BODY_SIZE));
    }
    static constexpr char OPEN_TAG[] = "<x>";
    static constexpr char CLOSE_TAG[] = "</x>";
    std::string body(static_cast<std::size_t>(size), 'x');
    body.replace(0, sizeof OPEN_TAG - 1, OPEN_TAG);
    const std::size_t innerSize = static_cast<std::size_t>(size - MIN_XML_BODY_SIZE);
    fillChunkedContent(body.data() + sizeof OPEN_TAG - 1, innerSize, 'x');
    body.replace(body.size() - (sizeof CLOSE_TAG - 1), sizeof CLOSE_TAG - 1, CLOSE_TAG);
    return body;
}

std::string DiskUtils::generateAttachment(INT32 size) {
    return makeChunkedContent(size > 0 ? static_cast<std::size_t>(size) : 0, 'A');
}

}  // namespace zorvane::pubsub
