// Notations inside option values: colon probability weights and sweeps.
#include <cstdlib>
#include <sstream>
#include <string>

#include "common/CliFault.h"
#include "common/CommonUtils.h"

namespace zorvane::pubsub {

namespace {

std::string doubleText(double value) {
    std::ostringstream out;
    out << value;
    return out.str();
}

}  // namespace

bool CommonUtils::isBlankOrTabs(const std::string& str) {
    return str.find_first_not_of(" \t") == std::string::npos;
}

bool CommonUtils::doesThatStringContainAnyNonNumericalOrNonDotCharacters(const std::string& str) {
    return str.find_first_not_of("0123456789.") != std::string::npos;
}

bool CommonUtils::parseTokenStringColonDouble(const std::string& token, std::string& name,
                                              double& weight, double defaultWeight) {
    std::vector<std::string> parts;
    tokenizeString(token, parts, ":");
    if (parts.size() == 1) {
        name = parts[0];
        weight = defaultWeight;
        return true;
    }
    if (parts.size() != 2) {
        return false;
    }
    // Topic names may hold a colon ("#P2P/v:host/..."): only digits and dots
    // after it make a weight; anything else keeps the token whole.
    if (doesThatStringContainAnyNonNumericalOrNonDotCharacters(parts[1])) {
        name = token;
        weight = defaultWeight;
        return true;
    }
    name = parts[0];
    weight = std::strtod(parts[1].c_str(), nullptr);
    return true;
}

bool CommonUtils::parseTokenIntColonDouble(const std::string& token, int& value, double& weight,
                                           double defaultWeight) {
    std::vector<std::string> parts;
    tokenizeString(token, parts, ":");
    if (parts.size() > 2) {
        return false;
    }
    value = static_cast<int>(std::strtol(parts[0].c_str(), nullptr, 10));
    weight = parts.size() == 2 ? std::strtod(parts[1].c_str(), nullptr) : defaultWeight;
    return true;
}

bool CommonUtils::processWeightedStringList(const std::vector<std::string>& in,
                                            std::vector<std::string>& names,
                                            std::vector<double>& weights, bool strict) {
    names.clear();
    weights.clear();
    bool allUsable = true;
    for (const std::string& token : in) {
        std::string name;
        double weight = 1.0;
        if (!parseTokenStringColonDouble(token, name, weight, 1.0)) {
            if (strict) {
                cliFault(
                    "ERROR: Unable to parse correctly one of the values for a list of strings "
                    "that involves probability weights. Got " +
                    token + ".");
            }
            allUsable = false;
            continue;
        }
        names.push_back(name);
        weights.push_back(weight);
    }
    return allUsable;
}

bool CommonUtils::processWeightedIntList(const std::vector<std::string>& in,
                                         std::vector<int>& values, std::vector<double>& weights,
                                         bool strict) {
    values.clear();
    weights.clear();
    bool allUsable = true;
    for (const std::string& token : in) {
        int value = 0;
        double weight = 1.0;
        if (!parseTokenIntColonDouble(token, value, weight, 1.0)) {
            if (strict) {
                cliFault(
                    "ERROR: Unable to parse correctly one of the values for a list of integers "
                    "that involves probability weights. Got " +
                    token + ".");
            }
            allUsable = false;
            continue;
        }
        if (weight < 0.0) {
            if (strict) {
                cliFault("ERROR: Must use a positive value for the weights.  Found (" +
                         doubleText(weight) + ")");
            }
            allUsable = false;
            continue;
        }
        values.push_back(value);
        weights.push_back(weight);
    }
    return allUsable;
}

void CommonUtils::getSizeListFromSweep(const std::string& value, std::vector<int>& sizes,
                                       const char* wrongFormText, const char* optionWord) {
    std::vector<std::string> parts;
    tokenizeString(value, parts, ",");
    if (parts.size() != 3) {
        cliFault(wrongFormText);
    }
    const long long start = static_cast<int>(std::strtol(parts[0].c_str(), nullptr, 10));
    const long long step = static_cast<int>(std::strtol(parts[1].c_str(), nullptr, 10));
    const long long end = static_cast<int>(std::strtol(parts[2].c_str(), nullptr, 10));
    // A step that does not move towards the end never reaches it.
    if (step <= 0) {
        cliFault(std::string("ERROR: The step of ") + optionWord +
                 " must be above 0, as in start,step,end.  Found (" + std::to_string(step) + ")");
    }
    sizes.clear();
    if (start > end) {
        return;
    }
    if ((end - start) / step + 1 > MAX_GENERATED_ENTRIES) {
        cliFault(std::string("ERROR: The sweep of ") + optionWord + " would give more than " +
                 std::to_string(MAX_GENERATED_ENTRIES) + " sizes.  Found (" + value + ")");
    }
    // Summed in 64 bits: the last step may pass the largest int.
    for (long long size = start; size <= end; size += step) {
        sizes.push_back(static_cast<int>(size));
    }
}

void CommonUtils::getAttachmentSizeListFromAttachmentSizeSweep(const std::string& value,
                                                               std::vector<int>& sizes,
                                                               std::vector<double>& weights) {
    getSizeListFromSweep(value, sizes,
                         "ERROR: Must specify start,step,end in bytes for attachment size sweep",
                         "-msas");
    weights.assign(sizes.size(), 1.0);
}

}  // namespace zorvane::pubsub
