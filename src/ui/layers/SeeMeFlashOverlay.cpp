#include "ui/layers/SeeMeFlashOverlay.h"

#include "toolkit/AccessibleRole.h"
#include "toolkit/ReducedMotion.h"
#include "ui/look/AmbrelLogo.h"
#include "ui/look/TextStyling.h"

#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace ambrel {

SeeMeFlashOverlay::SeeMeFlashOverlay(std::function<void()> onDismiss, const ViewTimings &timings, QWidget *parent)
    : CoveringLayer(parent), m_onDismiss(std::move(onDismiss)), m_timings(timings),
      m_logo(new AmbrelLogo(theme::flashLogoSize, false, this)), m_title(new QLabel(QStringLiteral("SEE ME"), this))
{
    setAccessibleRole(*this, QAccessible::Pane);
    setAccessibleName(QStringLiteral("See Me flash"));
    setFocusPolicy(Qt::StrongFocus);
    m_title->setAttribute(Qt::WA_TransparentForMouseEvents);

    auto *const column = new QVBoxLayout(this);
    column->setSpacing(theme::flashSpacing);
    column->addStretch();
    column->addWidget(m_logo, 0, Qt::AlignHCenter);
    column->addWidget(m_title, 0, Qt::AlignHCenter);
    column->addStretch();

    showColoring();
    show();
    fade(0, 1);
    m_flips.setTimerType(Qt::PreciseTimer);
    connect(&m_flips, &QTimer::timeout, this, &SeeMeFlashOverlay::flip);
    m_flips.start(m_timings.flashFlip);
}

void SeeMeFlashOverlay::remove()
{
    m_flips.stop();
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    fade(1, 0);
}

void SeeMeFlashOverlay::flip()
{
    m_alternate = !m_alternate;
    showColoring();
}

void SeeMeFlashOverlay::showColoring()
{
    styleText(*m_title, theme::TextStyle::FlashTitle, m_alternate ? QColor(Qt::white) : theme::ambrelRed);
    m_logo->setInverted(m_alternate);
    update();
}

void SeeMeFlashOverlay::fade(qreal from, qreal to)
{
    const bool isRemoval = to < from;
    const auto finish = [this, isRemoval] {
        m_picture = {};
        if (isRemoval) {
            hide();
            deleteLater();
            return;
        }
        m_logo->show();
        m_title->show();
        update();
    };
    m_fade.stop();
    m_fade.disconnect(this);
    if (isMotionReduced()) {
        finish();
        return;
    }
    const qreal current = m_picture.isNull() ? from : m_fade.currentValue().toReal();
    if (m_picture.isNull())
        m_picture = grab();
    m_logo->hide();
    m_title->hide();
    m_fade.setStartValue(current);
    m_fade.setEndValue(to);
    m_fade.setDuration(int(m_timings.flashFade.count()));
    connect(&m_fade, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
    connect(&m_fade, &QVariantAnimation::finished, this, finish);
    m_fade.start();
}

void SeeMeFlashOverlay::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Escape:
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!event->isAutoRepeat()) // the key that sent the message may still be held
            m_onDismiss();
        break;
    default:
        CoveringLayer::keyPressEvent(event);
    }
}

void SeeMeFlashOverlay::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        m_onDismiss();
}

void SeeMeFlashOverlay::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (!m_picture.isNull()) {
        painter.setOpacity(m_fade.currentValue().toReal());
        painter.drawPixmap(0, 0, m_picture);
        return;
    }
    painter.fillRect(rect(), m_alternate ? theme::ambrelRed : QColor(Qt::white));
    m_logo->paintShadow(painter);
}

} // namespace ambrel
