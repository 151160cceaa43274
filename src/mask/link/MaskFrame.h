// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

class DeviceModule;
class Frame;

/// The mask test that a script asks for, frame "q": F is the pen (from 0), N1 and N2 switch the messages of a pass and
/// a failure, N3 is 1 to stop the script at a failure, 2 to stop it at a pass. A pen without data passes. Nothing is
/// answered but the stop.
class MaskFrame
{
public:
    enum class Judgement
    {
        Inside,
        Outside,
        None ///< no mask, one that is out of order, or a pen without data
    };
    /// Registers the handler; the module outlives it. judged is told what came of each test, before its message.
    explicit MaskFrame(DeviceModule& device, std::function<void(Judgement)> judged = {});

private:
    bool maskTest(const Frame& frame);
    void tell(Judgement judgement) const;

    DeviceModule& m_device;
    std::function<void(Judgement)> m_judged;
};
