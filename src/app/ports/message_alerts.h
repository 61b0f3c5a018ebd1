#pragma once

#include "platform/ports/alerts.h"

namespace velmora
{

/// Alerts as the platform's message boxes, over the active window.
class MessageAlerts : public Alerts
{
public:
    std::size_t show(const Alert& alert) override;
};

} // namespace velmora
