// Asks KIO for the preview of one file the way Dolphin does, through a
// KIO::PreviewJob with only the named plugin enabled, and saves what comes
// back as a PNG. Exit 0 with a picture, 1 when the job reports the file failed.

#include <KFileItem>
#include <KIO/PreviewJob>

#include <QGuiApplication>
#include <QPixmap>
#include <QUrl>

#include <cstdio>

int main(int argc, char** argv) {
    QGuiApplication application(argc, argv);
    if (argc != 5) {
        std::fprintf(stderr, "usage: %s FILE PLUGIN SIZE OUTPUT.png\n", argv[0]);
        return 2;
    }
    const QString output = QString::fromLocal8Bit(argv[4]);
    const QStringList plugins{QString::fromLocal8Bit(argv[2])};
    const int size = QString::fromLocal8Bit(argv[3]).toInt();
    KFileItemList items{KFileItem(QUrl::fromLocalFile(QString::fromLocal8Bit(argv[1])))};
    auto* job = new KIO::PreviewJob(items, QSize(size, size), &plugins);
    int status = 1;
    QObject::connect(job, &KIO::PreviewJob::gotPreview, [&](const KFileItem&, const QPixmap& preview) {
        status = preview.save(output, "PNG") ? 0 : 3;
    });
    QObject::connect(job, &KJob::result, &application, &QCoreApplication::quit);
    application.exec();
    return status;
}
