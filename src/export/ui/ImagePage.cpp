// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/ui/ImagePage.h"

#include "controls/graph/GraphModel.h"
#include "export/ExportNames.h"
#include "export/ui/PictureExport.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "program/UserMessages.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QSlider>
#include <QVBoxLayout>

ImagePage::ImagePage(const ExportContext& context, const options::ImageOptions& where, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_where(where)
    , combFormat(new QComboBox(this))
    , combResolution(new QComboBox(this))
    , lblResolution(new QLabel(tr("&Resolution"), this))
    , lblSize(new QLabel(this))
{
    combFormat->setObjectName(QStringLiteral("combFormat"));
    combFormat->addItems(
        {tr("JPEG image file (*.jpg)"), tr("Windows meta file (*.wmf)"), tr("Bitmap image file (*.bmp)")});
    combResolution->setObjectName(QStringLiteral("combResolution"));
    for (int index = 0; const std::optional<int> side = ImageExport::side(index); ++index)
        combResolution->addItem(QStringLiteral("%1 x %1").arg(*side));
    lblResolution->setObjectName(QStringLiteral("lblResolution"));
    lblResolution->setBuddy(combResolution);
    lblSize->setObjectName(QStringLiteral("lblSize"));

    auto* const form = new QFormLayout;
    form->addRow(tr("&Format"), combFormat);
    form->addRow(lblResolution, combResolution);
    auto* const group = new QGroupBox(tr("Aspect ratio (%)"), this);
    auto* const aspects = new QFormLayout(group);
    sldXRatio = addSlider(tr("&Width"), "sldXRatio", *aspects);
    sldYRatio = addSlider(tr("&Height"), "sldYRatio", *aspects);
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(group);
    layout->addWidget(lblSize);
    layout->addStretch();

    const ImageExport::Choice shown = ImageExport::stored(context.preferences, where);
    combFormat->setCurrentIndex(shown.format);
    combResolution->setCurrentIndex(shown.resolution);
    sldXRatio->setValue(shown.xAspect);
    sldYRatio->setValue(shown.yAspect);
    connect(combFormat, &QComboBox::currentIndexChanged, this, &ImagePage::showResolution);
    connect(combResolution, &QComboBox::currentIndexChanged, this, &ImagePage::showSize);
    showResolution();
}

QSlider* ImagePage::addSlider(const QString& axis, const char* name, QFormLayout& form)
{
    constexpr int kStep = 10;
    auto* const slider = new QSlider(Qt::Horizontal, this);
    slider->setObjectName(QLatin1String(name));
    slider->setRange(ImageExport::kLeastAspect, ImageExport::kMostAspect);
    slider->setPageStep(kStep);
    slider->setTickInterval(kStep);
    slider->setTickPosition(QSlider::TicksBelow);
    slider->setAccessibleName(tr("Aspect ratio (%): %1").arg(QString(axis).remove(QLatin1Char('&'))));
    auto* const value = new QLabel(this);
    value->setMinimumWidth(value->fontMetrics().horizontalAdvance(QStringLiteral("100 %")));
    value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    const auto show = [this, slider, value] {
        value->setText(tr("%1 %").arg(slider->value()));
        showSize();
    };
    connect(slider, &QSlider::valueChanged, this, show);
    value->setText(tr("%1 %").arg(slider->value()));
    auto* const row = new QHBoxLayout;
    row->addWidget(slider);
    row->addWidget(value);
    form.addRow(axis, row);
    if (auto* const label = qobject_cast<QLabel*>(form.labelForField(row)))
        label->setBuddy(slider);
    return slider;
}

ImageExport::Choice ImagePage::choice() const
{
    return {combFormat->currentIndex(), combResolution->currentIndex(), sldXRatio->value(), sldYRatio->value()};
}

void ImagePage::showResolution()
{
    const bool hasPixels = combFormat->currentIndex() != ImageExport::Metafile;
    combResolution->setVisible(hasPixels);
    lblResolution->setVisible(hasPixels);
    showSize();
}

QString ImagePage::sizeText() const
{
    constexpr double kHundredthsPerCentimetre = 1000;
    const ImageExport::Choice shown = choice();
    const std::optional<QSize> size = ImageExport::size(shown.format, shown);
    if (!size)
        return QString();
    if (shown.format != ImageExport::Metafile)
        return tr("Picture: %1 x %2 pixels").arg(size->width()).arg(size->height());
    return tr("Picture: %1 x %2 cm, lines and texts")
        .arg(locale().toString(size->width() / kHundredthsPerCentimetre, 'f', 1),
             locale().toString(size->height() / kHundredthsPerCentimetre, 'f', 1));
}

void ImagePage::showSize()
{
    lblSize->setText(sizeText());
}

void ImagePage::store()
{
    const ImageExport::Choice shown = choice();
    Preferences& preferences = m_context.preferences;
    const SettingsStore::Batch batch(preferences.store());
    if (shown.format >= 0)
        preferences.setValue(m_where.type, shown.format);
    if (shown.resolution >= 0)
        preferences.setValue(m_where.resolution, shown.resolution);
    preferences.setValue(m_where.xAspect, shown.xAspect);
    preferences.setValue(m_where.yAspect, shown.yAspect);
}

void ImagePage::save(const GraphModel& graph, const QString& suggestedName)
{
    const QPointer<const GraphModel> alive(&graph);
    const ExportContext context = m_context;
    const ImageExport::Choice shown = choice();
    const QString name =
        ExportNames::ask(context.filePicker, context.preferences, ImageExport::filter(shown.format), suggestedName);
    if (name.isEmpty()) {
        context.messages.message(tr("You must enter a filename to save the image."),
                                 UserMessages::OkOnly | UserMessages::Exclamation, tr("Save Error"));
        return;
    }
    if (!alive)
        return;
    const Outcome written = PictureExport::ExportFile(graph, name, shown.format, true, shown, context.messages);
    if (!written)
        context.messages.message(written.sentence(), UserMessages::OkOnly | UserMessages::Exclamation,
                                 tr("Save Error"));
}
