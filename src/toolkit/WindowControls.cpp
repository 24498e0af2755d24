#include "toolkit/WindowControls.h"

#include "toolkit/WindowControlButton.h"

#include <QEvent>
#include <QHBoxLayout>

namespace ambrel {

namespace {

WindowControlColors colorsOf(const QPalette &palette)
{
    return {palette.color(QPalette::WindowText), palette.color(QPalette::Midlight),
            palette.color(QPalette::Mid),        palette.color(QPalette::HighlightedText),
            palette.color(QPalette::Highlight),  palette.color(QPalette::Highlight).darker(),
            palette.color(QPalette::Highlight)};
}

} // namespace

WindowControls::WindowControls(QWidget *parent)
    : QWidget(parent), m_minimize(new WindowControlButton(WindowControlButton::Action::Minimize, this)),
      m_maximize(new WindowControlButton(WindowControlButton::Action::Maximize, this)),
      m_close(new WindowControlButton(WindowControlButton::Action::Close, this))
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    for (WindowControlButton *button : {m_minimize, m_maximize, m_close})
        layout->addWidget(button);
    setColors(colorsOf(palette()));

    connect(m_minimize, &QPushButton::clicked, this, [this] { window()->showMinimized(); });
    connect(m_maximize, &QPushButton::clicked, this,
            [this] { window()->setWindowState(window()->windowState() ^ Qt::WindowMaximized); });
    connect(m_close, &QPushButton::clicked, this, [this] { window()->close(); });
}

void WindowControls::setColors(const WindowControlColors &colors)
{
    for (WindowControlButton *button : {m_minimize, m_maximize, m_close})
        button->setColors(colors);
}

void WindowControls::showEvent(QShowEvent *event)
{
    window()->installEventFilter(this);
    followWindowState();
    QWidget::showEvent(event);
}

bool WindowControls::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::WindowStateChange && watched == window())
        followWindowState();
    return QWidget::eventFilter(watched, event);
}

void WindowControls::followWindowState()
{
    using Action = WindowControlButton::Action;
    m_maximize->setAction(window()->isMaximized() ? Action::Restore : Action::Maximize);
}

} // namespace ambrel
