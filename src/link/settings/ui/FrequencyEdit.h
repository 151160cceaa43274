// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLineEdit>

#include <cstdint>
#include <optional>

/// A box for a frequency with suffixes (settingsrules::wholeHertz): typed keys pass FilterFrequencyKey, a pasted text
/// is taken as a whole or not at all. Moving, editing and clipboard keys work as everywhere.
///
/// The box knows the text in force. Another text is the user's until it is taken; one that is no frequency is refused:
/// the text in force stands again and the user is told so at the box.
class FrequencyEdit : public QLineEdit
{
    Q_OBJECT

public:
    /// Frequencies below the lowest, in hertz, are none for this box.
    explicit FrequencyEdit(int lowest = 0, QWidget* parent = nullptr);

    /// What is in force now.
    void showFrequency(const QString& text);
    void showFrequency(double hertz);
    /// Whether the text is another one than that in force.
    bool isEdited() const { return text() != m_inForce; }
    /// The text, or that in force where the text is no frequency.
    QString frequencyText() const;

    /// What the text means; nothing when it is no frequency.
    std::optional<std::int32_t> hertz() const;
    /// Puts the text in force and gives what it means, or refuses it and gives nothing.
    std::optional<std::int32_t> take();

Q_SIGNALS:
    /// Enter was pressed; the key goes no further.
    void entered();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;

private:
    void pasteFrequency();
    void tell(const QString& refused);

    int m_lowest;
    QString m_inForce;
};
