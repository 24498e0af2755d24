#include "ui/SeeMeAlert.h"

#include "toolkit/WrappedLabel.h"
#include "ui/AccessibleRole.h"
#include "ui/AmbrelPrimaryButton.h"
#include "ui/Painting.h"
#include "ui/Theme.h"

#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>

namespace ambrel {

namespace {

QString title()
{
    return QStringLiteral("Can you see me?");
}

} // namespace

SeeMeAlert::SeeMeAlert(const QString &message, std::function<void()> onDismiss, QWidget *parent)
    : CoveringLayer(parent), m_onDismiss(std::move(onDismiss)), m_sheet(new QWidget(this)),
      m_message(new WrappedLabel(message, m_sheet)),
      m_dismiss(new AmbrelPrimaryButton(QStringLiteral("Dismiss"), m_sheet))
{
    setAccessibleRole(*this, QAccessible::Dialog);
    setAccessibleName(title());

    auto *const heading = new QLabel(title(), m_sheet);
    heading->setFont(theme::font(theme::TextStyle::Title2));
    heading->setAlignment(Qt::AlignCenter);
    m_message->setAlignment(Qt::AlignCenter);

    auto *const column = new QVBoxLayout(m_sheet);
    column->setContentsMargins(theme::alertPadding, theme::alertPadding, theme::alertPadding, theme::alertPadding);
    column->setSpacing(theme::alertSpacing);
    column->addWidget(heading);
    column->addWidget(m_message);
    column->addWidget(m_dismiss);
    m_sheet->setFixedWidth(theme::alertWidth);

    auto *const centre = new QVBoxLayout(this);
    centre->setContentsMargins(theme::alertPadding, theme::alertPadding, theme::alertPadding, theme::alertPadding);
    centre->addWidget(m_sheet, 0, Qt::AlignCenter);

    connect(m_dismiss, &QPushButton::clicked, this, [this] { m_onDismiss(); });
    show();
}

void SeeMeAlert::setMessage(const QString &message)
{
    m_message->setText(message);
}

void SeeMeAlert::takeFocus()
{
    m_dismiss->setFocus();
}

void SeeMeAlert::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        m_onDismiss();
    else
        CoveringLayer::keyPressEvent(event);
}

void SeeMeAlert::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && !m_sheet->geometry().contains(event->position().toPoint()))
        Q_EMIT clickedBeside();
}

void SeeMeAlert::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), theme::alertBackdrop);
    fillRounded(painter, m_sheet->geometry(), theme::alertSurface, theme::alertRadius);
}

} // namespace ambrel
