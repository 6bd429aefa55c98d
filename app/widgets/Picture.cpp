#include "app/widgets/Picture.h"

#include <QIconEngine>
#include <QImageReader>
#include <QPainter>
#include <QPixmap>

#include <future>

namespace {

using Images = QVector<QImage>; // one for each size

Images readImages(const QString& path)
{
    QImageReader reader(path);
    Images images;
    do
        images.append(reader.read());
    while (reader.jumpToNextImage());
    return images;
}

// Becomes the icon that the file makes as soon as something of it is asked for.
class PictureEngine : public QIconEngine
{
public:
    /// Where no thread is to be had the picture is read when it is needed.
    explicit PictureEngine(const QString& path)
        : m_images(std::async(std::launch::async | std::launch::deferred, readImages, path))
    {
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override
    {
        painter->drawPixmap(rect, pixmap(rect.size(), mode, state));
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        return icon().pixmap(size, mode, state);
    }
    QSize actualSize(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        return icon().actualSize(size, mode, state);
    }
    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) const override
    {
        return icon().availableSizes(mode, state);
    }
    QIconEngine* clone() const override { return new PictureEngine(*this); }

private:
    const QIcon& icon() const
    {
        if (m_images.valid()) {
            for (const QImage& image : m_images.get())
                m_icon.addPixmap(QPixmap::fromImage(image));
            m_images = {};
        }
        return m_icon;
    }

    mutable std::shared_future<Images> m_images; // without a state once they are in the icon
    mutable QIcon m_icon;
};

} // namespace

QIcon picture(const char* file)
{
    return QIcon(new PictureEngine(QLatin1String(":/OrvexManager/Resources/") + QLatin1String(file)));
}
