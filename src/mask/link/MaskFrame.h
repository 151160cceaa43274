// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class DeviceModule;
class Frame;

/// The mask test that a script asks for, frame "q": F is the pen (from 0), N1 and N2 switch the messages of a pass and
/// a failure, N3 is 1 to stop the script at a failure, 2 to stop it at a pass. A pen without data passes. Nothing is
/// answered but the stop.
class MaskFrame
{
public:
    /// Registers the handler; the module outlives it.
    explicit MaskFrame(DeviceModule& device);

private:
    bool maskTest(const Frame& frame);

    DeviceModule& m_device;
};
