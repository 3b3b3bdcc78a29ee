// The applications that a broadcast (or another AIT) signals: which one runs, and what the receiver is told
// of them.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "Host/Shell/Content/Ait.h"
#include "Host/Shell/Processes/ReceiverControl.h"

namespace Shell {

class Broadcast {
 public:
    // The user agent tells the profile of the television.
    Broadcast(std::string userAgent, ReceiverControl& receiver);

    // The applications of the table that this television runs, the one to start first at the front: AUTOSTART
    // before PRESENT, then by priority. What is wrong with the others, or with the table, is added to the
    // reasons.
    [[nodiscard]] std::vector<AitApplication> applicationsOf(const std::string& xml, const std::string& url,
                                                             std::string& reasons) const;

    // What dvb://current.ait/... means from now on.
    void announce(const std::vector<AitApplication>& applications);

    // The view shows an application that a table gives these boundaries, or none that a table tells of.
    void setBoundaries(std::int32_t view, const std::vector<std::string>& origins);
    void forgetBoundaries(std::int32_t view);
    // The receiver judges by those of the view on top.
    void changeTop(std::int32_t view);

 private:
    std::string m_userAgent;
    ReceiverControl& m_receiver;
    std::map<std::int32_t, std::string> m_boundaries;  // By view, as JSON.
    std::string m_usual;                               // The receiver's own.
    std::string m_told;
};

}  // namespace Shell
