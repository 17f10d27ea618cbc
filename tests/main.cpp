// Test entry: a QApplication (offscreen) exists for fonts, images and widgets.
#include <QApplication>
#include <QLocale>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", qgetenv("QT_QPA_PLATFORM").isEmpty() ? "offscreen"
                                                                     : qgetenv("QT_QPA_PLATFORM"));
    QLocale::setDefault(QLocale::c());
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
