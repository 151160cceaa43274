// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "values/Outcome.h"

#include <QString>

#include <cstdint>
#include <optional>

class PenDocument;

// What a running script needs of features beside it. Each is provided by whoever has the feature, in the desktop
// program and in `marrowick` alike; all run on the user-interface thread. A call may run nested event loops, in which
// documents may close and the link may go down. A failure is a sentence that the script's actions show; the script goes
// on all the same.

/// The kinds of picture that a script can ask for, by their number in the frame.
enum class ScriptPicture : std::int32_t
{
    Jpeg = 0,
    Metafile = 1,
    Bitmap = 2
};

/// Pictures of documents.
class ScriptPictures
{
public:
    virtual ~ScriptPictures() = default;

    /// Writes the document's graph into a picture by the rules of the image export: the name is cut at its first ".",
    /// gets the extension of the format (one of ScriptPicture), and an existing file is replaced without a question.
    virtual Outcome ExportFile(PenDocument& document, const QString& fileName, std::int32_t format) = 0;
};

/// Printing of documents.
class ScriptPrinting
{
public:
    virtual ~ScriptPrinting() = default;

    /// Shows the print dialog for the document's graph with that orientation chosen and returns when it is closed; the
    /// user confirms. A program without windows prints to the printer that it was told, or fails.
    virtual Outcome print(PenDocument& document, bool landscape) = 0;
};

/// The window of the admittance loop.
class ScriptLoopView
{
public:
    virtual ~ScriptLoopView() = default;

    virtual bool isShowing() const = 0;
    /// Closes it; nothing when it is not showing.
    virtual void close() = 0;
    /// As ScriptPictures and ScriptPrinting, of the loop as it shows. Called only while it is showing.
    virtual Outcome ExportFile(const QString& fileName, std::int32_t format) = 0;
    virtual Outcome print(bool landscape) = 0;
};

/// The window that asks for a bare file name (frmGetFileName); its text stays from one question to the next.
class ScriptFileNames
{
public:
    virtual ~ScriptFileNames() = default;

    /// Empty when the user gave none. Takes down a message that is showing first.
    virtual QString Dialog(const QString& caption) = 0;
    virtual void clearFileName() = 0;
};

/// A question that is answered by a line of text.
class ScriptInput
{
public:
    virtual ~ScriptInput() = default;

    /// Nothing when the user cancelled.
    virtual std::optional<QString> inputBox(const QString& prompt, const QString& title) = 0;
};

/// The features that a script can call on. A null one is not there: its action says so in a sentence and answers as
/// told. What is set outlives the script's actions.
struct ScriptPorts
{
    ScriptPictures* pictures = nullptr;
    ScriptPrinting* printing = nullptr;
    ScriptLoopView* loop = nullptr;
    ScriptFileNames* fileNames = nullptr;
    ScriptInput* input = nullptr;
};

/// The checker of scripts. It keeps the result of its last check.
class ScriptChecker
{
public:
    /// The answers of CheckScript; with any other nothing further is done.
    enum Code : std::int16_t
    {
        Clean = 0,
        Warnings = 1,
        Errors = 2,
        SevereErrors = 3
    };
    static constexpr std::int32_t kLongestMessages = 31200; ///< letters

    virtual ~ScriptChecker() = default;

    /// Judged against the instrument of that firmware and model; an empty model is none.
    virtual std::int16_t CheckScript(const QString& fileName, double& firmwareVersion, QString& deviceModel) = 0;
    /// Warnings and errors of the last check, at most size letters.
    virtual void GetMessages(std::int32_t size, QString& buffer) = 0;
};
