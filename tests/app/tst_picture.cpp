#include "app/widgets/Picture.h"
#include "support/TestEntry.h"
#include "support/WindowPlay.h"

#include <QIcon>
#include <QPainter>
#include <QtTest>

#include <cstddef>
#include <pthread.h>

/// Pictures that another thread reads, beside the icons that Qt makes of the same files at once.
class TstPicture : public QObject
{
    Q_OBJECT

private slots:
    void isTheIconOfItsFile_data();
    void isTheIconOfItsFile();
    void isThereAtOnce();
    void copiesShareIt();
    void isNeededByNobody();
    void isReadWithoutAThreadWhereNoneIsToBeHad();
};

namespace {

const char* const s_files[] = {"Orvex.ico", "icon4.ico", "63.ico", "Toolbarabout.ico", "tqmlogo.png"};

QIcon iconOf(const char* file)
{
    return QIcon(QLatin1String(":/OrvexManager/Resources/") + QLatin1String(file));
}

QImage painted(const QIcon& icon, Qt::Alignment alignment)
{
    QImage image(70, 40, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::green);
    QPainter painter(&image);
    icon.paint(&painter, QRect(3, 2, 60, 32), alignment, QIcon::Active, QIcon::On);
    return image;
}

} // namespace

void TstPicture::isTheIconOfItsFile_data()
{
    QTest::addColumn<QByteArray>("file");
    for (const char* file : s_files)
        QTest::newRow(file) << QByteArray(file);
}

void TstPicture::isTheIconOfItsFile()
{
    QFETCH(const QByteArray, file);
    const QIcon own = picture(file.constData());
    const QIcon expected = iconOf(file.constData());
    QVERIFY(!expected.availableSizes().isEmpty());
    QCOMPARE(own.isNull(), expected.isNull());
    QCOMPARE(own.availableSizes(), expected.availableSizes());
    for (const QSize size :
         {QSize(1, 1), QSize(16, 16), QSize(24, 20), QSize(32, 32), QSize(96, 84), QSize(500, 500)}) {
        for (const QIcon::Mode mode : {QIcon::Normal, QIcon::Disabled, QIcon::Active, QIcon::Selected}) {
            for (const QIcon::State state : {QIcon::Off, QIcon::On}) {
                QCOMPARE(own.actualSize(size, mode, state), expected.actualSize(size, mode, state));
                QCOMPARE(own.pixmap(size, mode, state).toImage(), expected.pixmap(size, mode, state).toImage());
            }
        }
    }
    for (const auto& alignment : {Qt::Alignment(Qt::AlignCenter), Qt::AlignLeft | Qt::AlignTop})
        QCOMPARE(painted(own, alignment), painted(expected, alignment));
}

void TstPicture::isThereAtOnce()
{
    for (int i = 0; i < 50; ++i) {
        for (const char* file : s_files)
            QVERIFY2(!picture(file).pixmap(16, 16).isNull(), file);
    }
}

void TstPicture::copiesShareIt()
{
    QIcon first = picture("Orvex.ico");
    const QIcon other = first;
    first = QIcon();
    QCOMPARE(other.pixmap(32, 32).toImage(), iconOf("Orvex.ico").pixmap(32, 32).toImage());
}

// Its reading may go on when nobody has it any more.
void TstPicture::isNeededByNobody()
{
    for (int i = 0; i < 50; ++i)
        picture("Orvex.ico");
    QVERIFY(!picture("Orvex.ico").pixmap(32, 32).isNull());
}

void TstPicture::isReadWithoutAThreadWhereNoneIsToBeHad()
{
    pthread_attr_t before;
    QCOMPARE(pthread_getattr_default_np(&before), 0);
    // There is no room for such a stack.
    pthread_attr_t beyondReach = before;
    QCOMPARE(pthread_attr_setstacksize(&beyondReach, std::size_t(1) << 46), 0);
    QCOMPARE(pthread_setattr_default_np(&beyondReach), 0);
    const QIcon own = picture("Orvex.ico");
    QCOMPARE(pthread_setattr_default_np(&before), 0);
    QCOMPARE(own.availableSizes(), iconOf("Orvex.ico").availableSizes());
    QCOMPARE(own.pixmap(32, 32).toImage(), iconOf("Orvex.ico").pixmap(32, 32).toImage());
}

TEST_ENTRY(picture, windowplay::runTest<TstPicture>)

#include "tst_picture.moc"
