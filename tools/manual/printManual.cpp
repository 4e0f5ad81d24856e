#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFont>
#include <QGuiApplication>
#include <QMarginsF>
#include <QPageLayout>
#include <QPageSize>
#include <QPdfWriter>
#include <QTextDocument>

#include <cstdio>

namespace {

int fail(const char* what, const char* file)
{
    std::fprintf(stderr, "'%s' could not be %s.\n", file, what);
    return 1;
}

} // namespace

// print-manual TEXT.html OUT.pdf: prints a text, and the pictures beside OUT that it shows, on A4.
int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "*=false");
    const QGuiApplication application(argc, argv);
    if (argc != 3) {
        std::fputs("print-manual TEXT.html OUT.pdf\n", stderr);
        return 2;
    }
    QFile text(QFile::decodeName(argv[1]));
    if (!text.open(QIODevice::ReadOnly)) {
        return fail("read", argv[1]);
    }
    QFile file(QFile::decodeName(argv[2]));
    if (!file.open(QIODevice::WriteOnly)) {
        return fail("written", argv[2]);
    }
    QDir::setCurrent(QFileInfo(file).absolutePath()); // a printed copy of the text knows no base of its own
    QPdfWriter writer(&file);
    writer.setTitle("Volvelle");
    writer.setCreator("Volvelle");
    writer.setResolution(300);
    writer.setPageLayout({QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF()});
    QFont font;
    font.setFamilies({"Inter", "Noto Sans", "DejaVu Sans"});
    font.setPointSizeF(9.5);
    QTextDocument document;
    document.setDefaultFont(font);
    document.setHtml(QString::fromUtf8(text.readAll()));
    document.print(&writer);
    return file.flush() ? 0 : fail("written", argv[2]);
}
