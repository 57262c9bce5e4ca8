// Files and the ready-made message lists built from them.
//
// Before publishing starts, the publish configuration is turned into lists
// of MsgProperties (genMsgArray), one list per group of publish topics, so
// that a publish thread only has to walk a list. The readers here load the
// bodies, attachments and structured message descriptions those lists are
// made of.
//
// Threads: static operations, all run on the main thread before traffic
// starts; they block on the disk. Every failure is a PubSubException.
#pragma once

#include <string>
#include <vector>

#include "common/MsgProperties.h"
#include "common/SdmProperties.h"
#include "common/dataTypes.h"

namespace zorvane::pubsub {

class PublishProperties;

class DiskUtils {
  public:
    // Shortest generated XML body: "<x></x>".
    static constexpr INT32 MIN_XML_BODY_SIZE = 7;

    // The whole file, byte for byte. Missing file: "File not found. " and
    // the path.
    static std::string readFile(const std::string& path);

    // One element per line, the line end ("\n" or "\r\n") removed and
    // nothing else changed; a last line without a line end counts. Missing
    // file: the same fault as readFile.
    static std::vector<std::string> readFileAsList(const std::string& path);

    // Writes (replaces) the file. "File not able to be open. " and the path
    // when it cannot be opened.
    static void writeFile(const std::string& path, const std::string& contents);

    // Removes blanks and tabs at both ends, in place.
    static void trimSpaces(std::string& text);

    // One description per file, in order, with ids counting up from
    // PUBSUB_SDM_ID_USER_DEF_BASE (50). Parse faults propagate.
    static std::vector<SdmProperties> genSdmPropsListFromFiles(
        const std::vector<std::string>& files);

    // One description with id 50 from the given lines.
    static SdmProperties genSdmPropsListFromString(const std::vector<std::string>& lines);

    // A generated XML body of exactly size bytes: "<x>", the chunked
    // content filled with "x", "</x>". Below 7 bytes: PubSubException.
    static std::string generateXmlBody(INT32 size);

    // A generated attachment of size bytes: the chunked content filled
    // with "A" (see ChunkedContent.h). A negative size gives nothing.
    static std::string generateAttachment(INT32 size);

    // Builds one list of messages for each group of publish topics into
    // msgsToPublish (emptied first) from the bodies, attachments, topics,
    // queues and structured message descriptions of publishProps. Without
    // the mixing flag the parts advance in step; with it every combination
    // occurs once. A minMsgsListSize of 0 or more doubles each list (at most
    // ten times) until it is longer than that, so that a vectored send finds
    // enough messages. Every fault, a file that cannot be read included, is
    // a PubSubException starting "Error reading documents to publish."
    static void genMsgArray(const PublishProperties& publishProps,
                            std::vector<std::vector<MsgProperties>>& msgsToPublish,
                            int minMsgsListSize);
};

}  // namespace zorvane::pubsub
