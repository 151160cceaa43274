// SPDX-License-Identifier: GPL-3.0-or-later
#include "ResonanceSpeed.h"

#include "controls/resonance/ModeFit.h"
#include "controls/resonance/ResonanceSolver.h"
#include "tests/controls/resonance/WildSweep.h"
#include "tests/fuzz/ResonanceInput.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <ctime>

using namespace resonance;
using namespace synthetic;

namespace resonancespeed {
namespace {

/// Of the processor: other programs do not count.
double milliseconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return 1e3 * static_cast<double>(now.tv_sec) + 1e-6 * static_cast<double>(now.tv_nsec);
}

std::vector<Sample> sweepOver(double decades, unsigned seed)
{
    std::vector<double> frequencies;
    for (int i = 0; i < kPoints; ++i)
        frequencies.push_back(40e3 * std::pow(10, decades * (i - kPoints / 2) / kPoints));
    return measured(Part{}, frequencies, 1e-3, seed);
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// The fit of one mode alone, from the start that the peer takes, over the same points and weights.
class PlainFit
{
public:
    explicit PlainFit(const std::vector<Sample>& samples)
    {
        m_sweep.load(samples);
        const std::vector<double>& g = m_sweep.g;
        const auto top = static_cast<std::size_t>(std::max_element(g.begin(), g.end()) - g.begin());
        std::size_t low = top;
        std::size_t high = top;
        while (low > 0 && g[low - 1] > g[top] / 2)
            --low;
        while (high + 1 < g.size() && g[high + 1] > g[top] / 2)
            ++high;
        m_start.reference = m_sweep.f[top];
        m_start.lnFs[0] = std::log(m_sweep.f[top]);
        m_start.lnQ[0] = std::log(m_sweep.f[top] / (m_sweep.f[high] - m_sweep.f[low]));
        m_start.g1[0] = g[top];
        m_start.offset = {0, m_sweep.b[top]};
    }
    FitResult run()
    {
        m_fitter.begin(1'000'000'000);
        m_fitter.weighByData({0, 1});
        return m_fitter.refine({0, m_sweep.size()}, m_start);
    }

private:
    Sweep m_sweep;
    ModeFitter m_fitter{m_sweep};
    Model m_start;
};

} // namespace

bool solutions()
{
    constexpr int kPens = 10;
    constexpr int kRounds = 41;
    bool met = true;
    for (const double decades : {0.02, 0.1, 1.0}) {
        std::vector<std::vector<Sample>> pens;
        for (unsigned pen = 1; pen <= kPens; ++pen)
            pens.push_back(sweepOver(decades, pen));
        ResonanceSolver solver;
        int found = 0;
        std::vector<double> one, ten;
        for (int i = 0; i < kRounds; ++i) {
            double sum = 0;
            for (const std::vector<Sample>& samples : pens) {
                const double start = milliseconds();
                found += solver.solve(samples).found;
                one.push_back(milliseconds() - start);
                sum += one.back();
            }
            ten.push_back(sum);
        }
        const bool kept = median(one) <= 1 && median(ten) <= 8 && found == kPens * kRounds;
        std::printf("1024 points over %.2f decades: %.3f ms a solution (at most 1), ten pens %.3f ms (at most 8)%s\n",
                    decades, median(one), median(ten), kept ? "" : " MISSED");
        met = met && kept;
    }
    return met;
}

bool wildSweeps()
{
    constexpr double kMost = 20;
    constexpr unsigned kSweeps = 1600;
    constexpr int kTries = 3; // the least of them is that of the work, without what the machine had besides
    double longest = 0;
    std::int64_t most = 0;
    ResonanceSolver solver;
    const auto take = [&](auto&& solve) {
        double least = kMost * 100;
        for (int i = 0; i < kTries; ++i) {
            const double start = milliseconds();
            solve();
            least = std::min(least, milliseconds() - start);
        }
        longest = std::max(longest, least);
    };
    for (unsigned seed = 0; seed < kSweeps; ++seed) {
        const std::vector<Sample> samples = wild(seed);
        take([&] { solver.solve(samples); });
        most = std::max(most, solver.work());
    }
    const bool kept = longest <= kMost;
    std::printf("longest of %u wild sweeps: %.3f ms (at most %.0f), most visits %.0f %% of what is allowed%s\n",
                kSweeps, longest, kMost, 100.0 * static_cast<double>(most) / ResonanceSolver::kMostWork,
                kept ? "" : " MISSED");
    longest = 0;
    const QDir corpus(QStringLiteral(MG_SOURCE_DIR "/tests/fuzz/corpus/resonance"));
    const QStringList names = corpus.entryList(QDir::Files);
    for (const QString& name : names) {
        QFile file(corpus.filePath(name));
        if (!file.open(QFile::ReadOnly))
            return false;
        const QByteArray bytes = file.readAll();
        take([&] {
            ResonanceEngine engine;
            fuzzed::feed(engine, reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                         static_cast<std::size_t>(bytes.size()));
            engine.AnalysisSolve(0, -1);
        });
    }
    std::printf("longest of %lld sweeps of the fuzz target's corpus: %.3f ms (at most %.0f)%s\n",
                static_cast<long long>(names.size()), longest, kMost, longest <= kMost ? "" : " MISSED");
    return kept && longest <= kMost;
}

bool againstScipy()
{
    constexpr double kLeastGain = 20;
    constexpr int kRounds = 21;
    const std::vector<Sample> samples = sweepOver(0.1, 1);
    const QTemporaryDir folder;
    QFile sweep(folder.filePath(QStringLiteral("sweep.f64")));
    if (!sweep.open(QFile::WriteOnly))
        return false;
    sweep.write(reinterpret_cast<const char*>(samples.data()), static_cast<qint64>(samples.size() * sizeof(Sample)));
    sweep.close();
    QProcess peer;
    peer.start(QStringLiteral("/usr/bin/python3"),
               {QStringLiteral(MG_SOURCE_DIR "/bench/resonance_peers.py"), sweep.fileName()});
    const auto ask = [&peer] {
        peer.write("fit\n");
        while (!peer.canReadLine()) {
            if (!peer.waitForReadyRead(60000))
                return QList<QByteArray>();
        }
        return peer.readLine().trimmed().split(' ');
    };
    if (!peer.waitForStarted() || ask().size() != 5) {
        std::printf("no comparison with SciPy, which needs python3-scipy\n");
        return true;
    }
    ResonanceSolver solver;
    PlainFit plain(samples);
    std::vector<double> whole, alone, theirs;
    Solution solution = solver.solve(samples);
    FitResult fit = plain.run();
    double fs = 0, q = 0, fsU = 0, qU = 0;
    for (int round = 0; round < kRounds; ++round) {
        double start = milliseconds();
        solution = solver.solve(samples);
        whole.push_back(milliseconds() - start);
        start = milliseconds();
        fit = plain.run();
        alone.push_back(milliseconds() - start);
        const QList<QByteArray> answer = ask();
        if (answer.size() != 5)
            return false;
        theirs.push_back(answer[0].toDouble());
        fs = answer[1].toDouble();
        q = answer[2].toDouble();
        fsU = answer[3].toDouble();
        qU = answer[4].toDouble();
    }
    peer.closeWriteChannel();
    peer.waitForFinished();
    // The same task has the same answer; the whole solution finds weights and window by itself.
    const bool same = std::abs(std::exp(fit.model.lnFs[0]) - fs) < 1e-3 * fsU &&
                      std::abs(std::exp(fit.model.lnQ[0]) - q) < 1e-3 * qU &&
                      std::abs(std::sqrt(fit.covariance(1, 1) * fit.scale()) * q / qU - 1) < 0.02;
    const Mode& mode = solution.mode;
    const bool near =
        std::abs(mode.fs.value - fs) < 3 * mode.fs.uncertainty && std::abs(mode.q.value - q) < 3 * mode.q.uncertainty;
    const auto tell = [&](const char* what, double mine, bool agrees) {
        const double gain = median(theirs) / mine;
        const bool kept = agrees && gain >= kLeastGain;
        std::printf("%s: %.3f ms, SciPy's fit with its uncertainties %.3f ms, %.0f times as fast (at least %.0f), "
                    "figures %s%s\n",
                    what, mine, median(theirs), gain, kLeastGain, agrees ? "agree" : "DISAGREE", kept ? "" : " MISSED");
        return kept;
    };
    const bool fitKept = tell("the fit alone, same start, points and weights", median(alone), same);
    return tell("the whole solution", median(whole), near) && fitKept;
}

} // namespace resonancespeed
