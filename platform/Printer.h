#pragma once

#include <QFont>
#include <QList>
#include <QSize>
#include <QString>
#include <functional>
#include <memory>

class QPrinter;
class QWidget;

namespace platform {

// A printed document drawn in twips (1440 to the inch) from the top left corner of the
// printable page, the way the office's lists have always been laid out. Texts are placed by
// the top of their line; fonts are the printer's default face in a point size, optionally bold.
class Printer
{
public:
    virtual ~Printer() = default;

    // Printable page, twips.
    virtual QSize pageSize() const = 0;
    virtual void setFontSize(int points) = 0;
    virtual void setBold(bool bold) = 0;
    // Height of a line of text in the current font, twips.
    virtual int lineHeight() const = 0;
    virtual void text(int x, int y, const QString& text) = 0;
    virtual void line(int x1, int y1, int x2, int y2) = 0;
    virtual void newPage() = 0;
    // Ends the document and sends it on. False with a reason when it could not be printed.
    virtual bool end(QString* error = nullptr) = 0;
    // Drops the document: nothing of it is printed.
    virtual void cancel() = 0;
};

// What a document holds, in drawing order.
struct PrintItem
{
    enum Kind { Text, Line, NewPage, End, Cancel };
    Kind kind = Text;
    int x = 0;
    int y = 0;
    int x2 = 0;
    int y2 = 0;
    QString text;
    int fontSize = 0;
    bool bold = false;
};

// Keeps everything drawn on it. Tests read the items; the real printers below replay them
// once the document is complete, so nothing reaches paper before it is whole.
class RecordingPrinter : public Printer
{
public:
    explicit RecordingPrinter(QSize pageTwips = a4PageTwips());

    QSize pageSize() const override { return m_page; }
    void setFontSize(int points) override { m_fontSize = points; }
    void setBold(bool bold) override { m_bold = bold; }
    int lineHeight() const override;
    void text(int x, int y, const QString& text) override;
    void line(int x1, int y1, int x2, int y2) override;
    void newPage() override;
    bool end(QString* error = nullptr) override;
    void cancel() override;

    const QList<PrintItem>& items() const { return m_items; }
    // The items of each page, page breaks left out.
    QList<QList<PrintItem>> pages() const;
    bool isEnded() const;
    bool isCancelled() const;

    // The printable area of an A4 page with quarter-inch side margins.
    static QSize a4PageTwips();

protected:
    virtual bool deliver(QString* error);

private:
    QSize m_page;
    int m_fontSize = 10;
    bool m_bold = false;
    QList<PrintItem> m_items;
};

// The print font: the platform's default face with the size given in twips, so that it draws
// the same on a painter scaled to twips whatever the device's resolution.
QFont printFont(int points, bool bold);

// Width of a text in twips when shown in a screen font.
int textWidthTwips(const QFont& screenFont, const QString& text);

// Draws recorded items on a printer (pages of the printer's printable area).
bool paintItems(const QList<PrintItem>& items, QPrinter* printer, QString* error = nullptr);

// Writes recorded items to a PDF file of A4 pages (the printable area of a4PageTwips()).
class PdfPrinter : public RecordingPrinter
{
public:
    explicit PdfPrinter(const QString& path);

protected:
    bool deliver(QString* error) override;

private:
    QString m_path;
};

// The default printer of the system, or null when none is installed. What it prints is first
// shown in a preview, from which the user prints it or saves it as PDF.
std::unique_ptr<Printer> openDefaultPrinter(QWidget* parent = nullptr);

// Tests supply the printer instead (a recording one, a PDF one, or none at all).
using PrinterFactory = std::function<std::unique_ptr<Printer>()>;
void setPrinterFactory(PrinterFactory factory);

} // namespace platform
