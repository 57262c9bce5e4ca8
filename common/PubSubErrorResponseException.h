// Record of the last messaging-library error of a client (its last-error
// slot). Never thrown: it is kept and read.
#pragma once

#include <string>

#include "common/PubSubException.h"
#include "common/dataTypes.h"

namespace zorvane::pubsub {

class PubSubErrorResponseException : public PubSubException {
  public:
    PubSubErrorResponseException(const std::string& subCode, INT32 responseCode,
                                 const std::string& responsePhrase, INT32 returnCode)
        : PubSubException("PubSubErrorResponseException: " + std::to_string(responseCode) + ": " +
                          responsePhrase),
          responseCode_m(responseCode),
          responsePhrase_m(responsePhrase),
          subCode_m(subCode),
          returnCode_m(returnCode) {}

    INT32 getResponseCode() const { return responseCode_m; }
    const std::string& getResponsePhrase() const { return responsePhrase_m; }
    const std::string& getSubCode() const { return subCode_m; }
    INT32 getReturnCode() const { return returnCode_m; }
    void setReturnCode(INT32 returnCode) { returnCode_m = returnCode; }

  private:
    INT32 responseCode_m;
    std::string responsePhrase_m;
    std::string subCode_m;
    INT32 returnCode_m;
};

}  // namespace zorvane::pubsub
