// SPDX-License-Identifier: GPL-3.0-or-later
#include "e2e/RandomSweep.h"

#include <QStringList>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string>

namespace e2e {

played::Manners someManners(Dice& dice)
{
    using played::Manners;
    Manners manners;
    if (dice.oneIn(2))
        manners.enquiryDelays = {std::chrono::milliseconds(dice.number(0, 300)),
                                 std::chrono::milliseconds(dice.number(0, 500))};
    if (dice.oneIn(3))
        manners.delay = std::chrono::milliseconds(dice.number(1, 30));
    if (dice.oneIn(3))
        manners.copies = dice.number(2, 3);
    if (dice.oneIn(2)) {
        manners.piece = static_cast<std::size_t>(dice.number(1, 200));
        manners.pause = std::chrono::microseconds(manners.piece < 20 ? 10 : dice.number(10, 500));
    }
    if (dice.oneIn(4))
        manners.order = Manners::Order::XFirst;
    if (dice.oneIn(4))
        manners.leftOut = std::string("lBRtQS").substr(static_cast<std::size_t>(dice.number(0, 5)), 1);
    if (dice.oneIn(4))
        manners.levelsEvery = std::chrono::milliseconds(dice.number(5, 50));
    return manners;
}

AskedSweep someSweep(Dice& dice)
{
    AskedSweep asked;
    asked.type = QStringList{QStringLiteral("amplitude"), QStringLiteral("impedance"),
                             QStringLiteral("reactance")}[dice.number(0, 2)];
    asked.from = dice.number(10, 50000);
    asked.to = asked.from + dice.number(1000, 5000000);
    asked.points = dice.number(2, 200);
    asked.direction =
        QStringList{QStringLiteral("up"), QStringLiteral("down"), QStringLiteral("alternate")}[dice.number(0, 2)];
    asked.attenuation = 10 * dice.number(0, 4);
    asked.linear = dice.oneIn(2);
    asked.phase = dice.oneIn(2);
    asked.repeat = dice.oneIn(4) ? dice.number(2, 3) : 1;
    return asked;
}

played::LineFaults someFaults(Dice& dice)
{
    // Even on the logarithm, from a line that hardly lets a sweep through to one that spoils a frame in a run.
    const auto every = [&dice](double least) {
        return static_cast<int>(least * std::pow(100.0, dice.number(0, 1000) / 1000.0));
    };
    played::LineFaults faults;
    faults.seed = static_cast<unsigned>(dice.number(0, 1'000'000'000));
    faults.garbage = every(30);
    faults.lostBytes = every(40);
    faults.lostFrames = every(60);
    faults.split = every(2);
    faults.stall = every(150);
    faults.flood = every(100);
    faults.wrongLength = every(40);
    faults.nonNumeric = every(40);
    faults.unplug = every(100);
    return faults;
}

} // namespace e2e
