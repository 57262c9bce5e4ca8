// The release version of this build, filled in at build time.
//
// Threads: onlyInstance() creates the singleton on first use without a lock;
// the first use is on the main thread during start-up.
#pragma once

#include <string>

namespace zorvane::pubsub {

class GenReleaseVersion {
  public:
    static GenReleaseVersion* onlyInstance();

    GenReleaseVersion(const std::string& majorRel, const std::string& minorRel,
                      const std::string& minorRelSuffix, const std::string& minorLoad,
                      const std::string& minorLoadSuffix, const std::string& minorBuild,
                      const std::string& machine, const std::string& user,
                      const std::string& revision, const std::string& date);

    // "major.minor<suffix>.load<suffix>.build", e.g. "1.0.0.1".
    const std::string& getVersion() const { return version_m; }
    const std::string& getDateTime() const { return date_m; }
    const std::string& getRevision() const { return revision_m; }

  private:
    std::string version_m;
    std::string machine_m;
    std::string user_m;
    std::string revision_m;
    std::string date_m;
};

}  // namespace zorvane::pubsub
