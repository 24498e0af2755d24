#include "ui/layers/SeeMeAlert.h"

#include "toolkit/AccessibleRole.h"
#include "toolkit/ClearScrollArea.h"
#include "toolkit/ClientSideFrame.h"
#include "toolkit/WrappedLabel.h"
#include "ui/look/AmbrelButton.h"
#include "ui/look/Painting.h"
#include "ui/look/TextStyling.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <utility>

namespace ambrel {

namespace {

QString title()
{
    return QStringLiteral("Can you see me?");
}

class AccessibleSeeMeAlert : public QAccessibleWidget
{
public:
    explicit AccessibleSeeMeAlert(QWidget &alert) : QAccessibleWidget(&alert, QAccessible::Dialog) {}

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.modal = true;
        return state;
    }
};

} // namespace

SeeMeAlert::SeeMeAlert(const QString &message, std::function<void()> onDismiss, QWidget *parent)
    : CoveringLayer(parent), m_onDismiss(std::move(onDismiss)), m_sheet(new QWidget(this))
{
    setAccessibleFactory(*this, [](QWidget &alert) { return new AccessibleSeeMeAlert(alert); });
    setAccessibleName(title());
    setWindowBackground(*this);

    m_heading = new QLabel(title(), m_sheet);
    styleText(*m_heading, theme::TextStyle::Title2);
    m_heading->setAlignment(Qt::AlignCenter);
    m_messageArea = new QScrollArea(m_sheet);
    m_messageArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_messageArea->setWidgetResizable(true);
    m_messageArea->setFocusPolicy(Qt::NoFocus);
    m_message = new WrappedLabel({}, m_messageArea);
    m_message->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    showThrough(*m_messageArea, *m_message);
    m_dismiss = new AmbrelPrimaryButton(QStringLiteral("Dismiss"), m_sheet);
    connect(m_dismiss, &QPushButton::clicked, this, [this] { m_onDismiss(); });

    const int padding = theme::alertPadding;
    auto *const column = new QVBoxLayout(m_sheet);
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(theme::alertSpacing);
    column->addWidget(m_heading);
    column->addWidget(m_messageArea);
    column->addWidget(m_dismiss);
    m_sheet->setFixedWidth(theme::scaled(theme::alertWidth));
    auto *const centre = new QVBoxLayout(this);
    centre->setContentsMargins(padding, padding, padding, padding);
    centre->addWidget(m_sheet, 0, Qt::AlignCenter);

    setMessage(message);
    show();
}

void SeeMeAlert::setMessage(const QString &message)
{
    setAccessibleDescription(message);
    m_message->setText(message);
    fitMessage();
}

void SeeMeAlert::fitMessage()
{
    const int frame = 4 * theme::alertPadding + 2 * theme::alertSpacing + m_heading->sizeHint().height() +
                      m_dismiss->sizeHint().height();
    const int natural = m_message->heightForWidth(theme::scaled(theme::alertWidth) - 2 * theme::alertPadding);
    m_messageArea->setFixedHeight(std::clamp(natural, 0, std::max(0, height() - frame)));
}

void SeeMeAlert::takeFocus()
{
    m_dismiss->setFocus(Qt::PopupFocusReason);
}

void SeeMeAlert::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Escape:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!event->isAutoRepeat()) // a key that is held was meant for what is beneath
            m_onDismiss();
        break;
    case Qt::Key_PageUp:
        m_messageArea->verticalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepSub);
        break;
    case Qt::Key_PageDown:
        m_messageArea->verticalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepAdd);
        break;
    default:
        CoveringLayer::keyPressEvent(event);
    }
}

bool SeeMeAlert::isBackgroundAt(QPoint place) const
{
    return !m_sheet->geometry().contains(place);
}

void SeeMeAlert::mousePressEvent(QMouseEvent *event)
{
    m_pressedBeside.reset();
    if (event->button() == Qt::LeftButton && isBackgroundAt(event->position().toPoint()))
        m_pressedBeside = event->globalPosition().toPoint();
}

void SeeMeAlert::mouseReleaseEvent(QMouseEvent *event)
{
    const auto pressedAt = std::exchange(m_pressedBeside, std::nullopt);
    if (!pressedAt || event->button() != Qt::LeftButton)
        return;
    const QPoint distance = event->globalPosition().toPoint() - *pressedAt;
    if (distance.manhattanLength() < QApplication::startDragDistance())
        Q_EMIT clickedBeside();
}

void SeeMeAlert::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), theme::alertBackdrop);
    fillRounded(painter, m_sheet->geometry(), theme::alertSurface, theme::alertRadius);
}

void SeeMeAlert::resizeEvent(QResizeEvent *)
{
    fitMessage();
}

} // namespace ambrel
