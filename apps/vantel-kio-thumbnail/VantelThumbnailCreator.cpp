// Dolphin's thumbnails of overlay documents and framing decision lists. KDE
// Frameworks 5 ignores freedesktop .thumbnailer entries and asks its own
// plugins instead, through the "thumbnail" KIO worker: this is one, of the
// KIO::ThumbnailCreator kind that KIO 5.100 introduced (5.103 on Debian 12
// loads it by its embedded JSON metadata; the older ThumbCreator is
// deprecated there). It draws the picture `vantel thumbnail` draws, through
// the same library call.

#include <VantelPreview/FileThumbnail.hpp>

#include <KIO/ThumbnailCreator>
#include <KPluginFactory>

#include <QDebug>
#include <QFile>
#include <QImage>
#include <QUrl>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace {

// cairo's ARGB32 is premultiplied, 32 bits per pixel in native order: the
// layout of QImage's ARGB32_Premultiplied, so rows copy as they are.
QImage imageOf(const vantel::BitmapContext& bitmap) {
    vantel::ImageView pixels = bitmap.image();
    QImage image(pixels.width, pixels.height, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < pixels.height; ++y) {
        std::memcpy(image.scanLine(y), pixels.row(y), std::size_t(pixels.width) * sizeof(std::uint32_t));
    }
    return image;
}

}  // namespace

class VantelThumbnailCreator : public KIO::ThumbnailCreator {
    Q_OBJECT
public:
    VantelThumbnailCreator(QObject* parent, const QVariantList& args) : KIO::ThumbnailCreator(parent, args) {}

    KIO::ThumbnailResult create(const KIO::ThumbnailRequest& request) override {
        const int maxSide = std::max(request.targetSize().width(), request.targetSize().height());
        if (!request.url().isLocalFile() || maxSide < 1) return KIO::ThumbnailResult::fail();
        const QString path = request.url().toLocalFile();
        vantel::FileThumbnail thumbnail =
            vantel::drawFileThumbnail(vantel::DocumentSource::file(QFile::encodeName(path).toStdString()), maxSide);
        if (!thumbnail.ok()) {
            // The worker's standard error is the only place a reason can go.
            for (const std::string& problem : thumbnail.problems) {
                qWarning().noquote() << path + QStringLiteral(": ") + QString::fromStdString(problem);
            }
            return KIO::ThumbnailResult::fail();
        }
        return KIO::ThumbnailResult::pass(imageOf(*thumbnail.bitmap));
    }
};

K_PLUGIN_CLASS_WITH_JSON(VantelThumbnailCreator, "vantelthumbnail.json")

#include "VantelThumbnailCreator.moc"
