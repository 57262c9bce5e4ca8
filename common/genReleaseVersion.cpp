#include "common/genReleaseVersion.h"

#include "buildInfo.h"

namespace zorvane::pubsub {

GenReleaseVersion* GenReleaseVersion::onlyInstance() {
    static GenReleaseVersion* instance_s = new GenReleaseVersion(
        VEXLOAD_REL_MAJOR, VEXLOAD_REL_MINOR, VEXLOAD_REL_MINOR_SUFFIX, VEXLOAD_LOAD_MINOR,
        VEXLOAD_LOAD_MINOR_SUFFIX, VEXLOAD_BUILD_MINOR, VEXLOAD_BUILD_MACHINE, VEXLOAD_BUILD_USER,
        VEXLOAD_BUILD_REVISION, VEXLOAD_BUILD_DATE);
    return instance_s;
}

GenReleaseVersion::GenReleaseVersion(const std::string& majorRel, const std::string& minorRel,
                                     const std::string& minorRelSuffix,
                                     const std::string& minorLoad,
                                     const std::string& minorLoadSuffix,
                                     const std::string& minorBuild, const std::string& machine,
                                     const std::string& user, const std::string& revision,
                                     const std::string& date)
    : version_m(majorRel + "." + minorRel + minorRelSuffix + "." + minorLoad + minorLoadSuffix +
                "." + minorBuild),
      machine_m(machine),
      user_m(user),
      revision_m(revision),
      date_m(date) {}

}  // namespace zorvane::pubsub
