// The catalogue of canned structured messages, numbered 1 to 24: building
// each into a library message, building a modified variant, and checking a
// received message by the number in the first byte of its user data. The
// element tables and the list of supported numbers are in shared/sdkUtils.
//
// Free functions over the message given and constant tables: any thread may
// call them, one thread per message. Nothing blocks. Every finding is logged
// at error level.
#pragma once

#include "shared/sdkUtils.h"
#include "zorClient.h"
#include "zorClientMsg.h"

namespace zorvane::pubsub {

// Bits of missingFieldsOk: header fields a received message may lack.
constexpr zorClient_uint32_t MISSING_OK_SENDER_ID = 0x01;
constexpr zorClient_uint32_t MISSING_OK_SEQUENCE_NUMBER = 0x02;
constexpr zorClient_uint32_t MISSING_OK_SENDER_TIMESTAMP = 0x04;
constexpr zorClient_uint32_t MISSING_OK_REPLY_TO = 0x08;
constexpr zorClient_uint32_t MISSING_OK_CORRELATION_ID = 0x10;
constexpr zorClient_uint32_t MISSING_OK_MSG_TYPE = 0x20;
constexpr zorClient_uint32_t MISSING_OK_MESSAGE_ID = 0x40;

// Fills msg_p as catalogue message messageNum, containers closed. 0, or -1.
int createStructuredMsg(int messageNum, zorClient_opaqueMsg_pt msg_p);
// With closeContainers 0 the containers stay open for the caller (number
// 18's stream excepted); freeing the message releases them.
int createStructuredMsgWithCloseOption(int messageNum, zorClient_opaqueMsg_pt msg_p,
                                       zorClient_bool_t closeContainers);
// The same shapes with other values; no check exists for them.
int modifyStructuredMsgWithCloseOption(int messageNum, zorClient_opaqueMsg_pt msg_p,
                                       zorClient_bool_t closeContainers);

// Checks a received catalogue message. 0 when it matches, else -1.
int checkStructuredMsg(zorClient_opaqueMsg_pt msg_p, zorClient_uint32_t missingFieldsOk);
int checkStructuredMsgWithCloseOption(zorClient_opaqueMsg_pt msg_p,
                                      zorClient_uint32_t missingFieldsOk,
                                      zorClient_bool_t closeContainers);

// Adds the rows of a table up to its EOG_TYPE row, named "field_%d" from 0
// when map is non-zero. A row that cannot be added is logged and skipped.
// Returns the next free field number of a map, 0 for a stream.
int fillContainer(zorClient_opaqueContainer_pt cont_p, int map,
                  const sdkTestContainerElement* elements);
// Reads the rows of sdkContainer1 back and compares them exactly; every row
// is tried. *nextFieldNo_p (may be null) gets the number behind the last row.
int checkContainer(zorClient_opaqueContainer_pt cont_p, int map, int* nextFieldNo_p);

// Microseconds of the real-time clock.
zorClient_int64_t getTimeInUs();

}  // namespace zorvane::pubsub
