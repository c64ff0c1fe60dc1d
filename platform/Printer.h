#pragma once

#include <functional>
#include <memory>
#include <QByteArray>
#include <QFont>
#include <QList>
#include <QSize>
#include <QString>

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

// Keeps everything drawn on it. Tests read the items; the preview shows them once the
// document is complete, so nothing reaches paper before it is whole. The items are held
// compactly (a small fixed record each, the texts one after another in UTF-8), as a preview of
// the whole register holds hundreds of thousands of them.
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

    // The items drawn so far, in drawing order.
    QList<PrintItem> items() const;
    // Draws the document again on another printer, without ending it.
    void replay(Printer& target) const;
    // Bytes the recorded items take.
    qsizetype memoryUsed() const;

    // The printable area of an A4 page with quarter-inch side margins.
    static QSize a4PageTwips();

protected:
    virtual bool deliver(QString* error);

private:
    // Text: a and b are the text's start and length in m_texts. Line: a and b are x2 and y2.
    struct Stored
    {
        qint32 x;
        qint32 y;
        qint32 a;
        qint32 b;
        qint16 fontSize;
        quint8 kind;
        bool bold;
    };
    void add(PrintItem::Kind kind, int x = 0, int y = 0, int a = 0, int b = 0);
    PrintItem decoded(const Stored& s) const;

    QSize m_page;
    int m_fontSize = 10;
    bool m_bold = false;
    QList<Stored> m_items;
    QByteArray m_texts;
};

// The print font: the platform's default face with the size given in twips, so that it draws
// the same on a painter scaled to twips whatever the device's resolution.
QFont printFont(int points, bool bold);

// Width of a text in twips when shown in a screen font.
int textWidthTwips(const QFont& screenFont, const QString& text);

// Draws a recorded document on a printer (pages of the printer's printable area).
bool paintItems(const RecordingPrinter& document, QPrinter* printer, QString* error = nullptr);

// Writes a PDF file of A4 pages (the printable area of a4PageTwips()) page by page as the
// document is drawn, so that a list of any length prints in little memory. The pages go to a
// temporary file beside the target, which end() puts in place of the target; cancel(), a
// failure, or a printer dropped before end() removes it, so a half document never appears
// under the target's name.
class PdfPrinter : public Printer
{
public:
    explicit PdfPrinter(const QString& path);
    ~PdfPrinter() override;

    QSize pageSize() const override;
    void setFontSize(int points) override { m_fontSize = points; }
    void setBold(bool bold) override { m_bold = bold; }
    int lineHeight() const override;
    void text(int x, int y, const QString& text) override;
    void line(int x1, int y1, int x2, int y2) override;
    void newPage() override;
    bool end(QString* error = nullptr) override;
    void cancel() override;

private:
    struct Output;
    // The output, opened at the first drawing; false once it failed or the document ended.
    bool open();

    QString m_path;
    int m_fontSize = 10;
    bool m_bold = false;
    bool m_finished = false;
    QString m_error;
    std::unique_ptr<Output> m_out;
};

// The default printer of the system, or null when none is installed. What it prints is first
// shown in a preview, from which the user prints it or saves it as PDF.
std::unique_ptr<Printer> openDefaultPrinter(QWidget* parent = nullptr);

// Tests supply the printer instead (a recording one, a PDF one, or none at all).
using PrinterFactory = std::function<std::unique_ptr<Printer>()>;
void setPrinterFactory(PrinterFactory factory);

} // namespace platform
