// What eighty stock widgets cost to show.

#include <QApplication>
#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QWidget window;
    window.resize(980, 680);
    auto *const grid = new QGridLayout(&window);
    constexpr int rows = 20;
    for (int row = 0; row < rows; ++row) {
        grid->addWidget(new QLabel(QStringLiteral("Label %1").arg(row), &window), row, 0);
        grid->addWidget(new QLineEdit(QStringLiteral("Field %1").arg(row), &window), row, 1);
        grid->addWidget(new QPushButton(QStringLiteral("Button %1").arg(row), &window), row, 2);
        grid->addWidget(new QCheckBox(QStringLiteral("Box %1").arg(row), &window), row, 3);
    }
    window.show();
    return QApplication::exec();
}
