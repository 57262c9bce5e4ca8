// Turns a structured message description into a library message before a
// send, and checks a received message against the same description.
//
// Stateless: every operation reads the description and the message given,
// so many threads may use one description at the same time. A message is
// used by one thread at a time (the library's rule). Nothing blocks.
#pragma once

#include "common/SdmProperties.h"
#include "zorClient.h"
#include "zorClientMsg.h"

namespace zorvane::pubsub {

class SdmMessageBuilder {
  public:
    // Writes the user data (the id byte unless the description has its own),
    // the container with its fields, and the header fields into msg. 0, or -1
    // after an error log naming what could not be written; the message may
    // then be partly written.
    static int buildMsg(const SdmProperties& sdm, zorClient_opaqueMsg_pt msg);

    // Compares a received message with the description: headers first (every
    // one is checked), then the container. 0 when it matches, else -1 with an
    // error log per finding. Containers it opens are closed again.
    static int checkMsg(const SdmProperties& sdm, zorClient_opaqueMsg_pt msg);

    // Adds one field under name_p (null in a stream). Map and stream fields
    // add a sub-container of Num Loops rounds of five fixed entries. 0, or -1.
    static int addField(zorClient_opaqueContainer_pt container, const SdmField& field,
                        const char* name_p);

    // Compares one received field with the expected one. 0 when equal, else -1.
    static int checkField(const SdmField& expected, const zorClient_field_t& received);
};

}  // namespace zorvane::pubsub
