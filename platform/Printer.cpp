#include "platform/Printer.h"

#include "platform/Dialogs.h"

#include <QAction>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPageLayout>
#include <QPainter>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QScreen>
#include <QToolBar>
#include <QtMath>

namespace platform {

namespace {

PrinterFactory& factorySlot()
{
    static PrinterFactory factory;
    return factory;
}

QSize printableTwips(const QPrinter& printer)
{
    const QRectF inches = printer.pageLayout().paintRect(QPageLayout::Inch);
    return QSize(qRound(inches.width() * 1440), qRound(inches.height() * 1440));
}

// Draws recorded items again on another printer, without ending it.
void replay(const QList<PrintItem>& items, Printer& target)
{
    for (const PrintItem& item : items) {
        switch (item.kind) {
        case PrintItem::Text:
            target.setFontSize(item.fontSize);
            target.setBold(item.bold);
            target.text(item.x, item.y, item.text);
            break;
        case PrintItem::Line:
            target.line(item.x, item.y, item.x2, item.y2);
            break;
        case PrintItem::NewPage:
            target.newPage();
            break;
        case PrintItem::End:
        case PrintItem::Cancel:
            break;
        }
    }
}

// Shows the finished document and prints it from there, or saves it as PDF.
class PreviewPrinter : public RecordingPrinter
{
public:
    PreviewPrinter(std::unique_ptr<QPrinter> printer, QWidget* parent)
        : RecordingPrinter(printableTwips(*printer)), m_printer(std::move(printer)),
          m_parent(parent)
    {
    }

protected:
    bool deliver(QString* error) override
    {
        QPrintPreviewDialog dialog(m_printer.get(), m_parent);
        QString paintError;
        QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, &dialog,
                         [&](QPrinter* p) { paintItems(items(), p, &paintError); });
        if (auto* bar = dialog.findChild<QToolBar*>()) {
            QAction* pdf = bar->addAction(QStringLiteral("PDF"));
            QObject::connect(pdf, &QAction::triggered, &dialog, [&] {
                const QString path = chooseFile(
                        {FileDialogKind::Save, QString(), QString(), QStringLiteral("PDF (*.pdf)")},
                        &dialog);
                if (path.isEmpty())
                    return;
                PdfPrinter file(path);
                replay(items(), file);
                file.end(&paintError);
            });
        }
        dialog.exec();
        if (!paintError.isEmpty() && error)
            *error = paintError;
        return paintError.isEmpty();
    }

private:
    std::unique_ptr<QPrinter> m_printer;
    QWidget* m_parent;
};

} // namespace

RecordingPrinter::RecordingPrinter(QSize pageTwips) : m_page(pageTwips) { }

int RecordingPrinter::lineHeight() const
{
    return qCeil(QFontMetricsF(printFont(m_fontSize, m_bold)).height());
}

void RecordingPrinter::text(int x, int y, const QString& text)
{
    PrintItem item;
    item.kind = PrintItem::Text;
    item.x = x;
    item.y = y;
    item.text = text;
    item.fontSize = m_fontSize;
    item.bold = m_bold;
    m_items << item;
}

void RecordingPrinter::line(int x1, int y1, int x2, int y2)
{
    PrintItem item;
    item.kind = PrintItem::Line;
    item.x = x1;
    item.y = y1;
    item.x2 = x2;
    item.y2 = y2;
    m_items << item;
}

void RecordingPrinter::newPage()
{
    PrintItem item;
    item.kind = PrintItem::NewPage;
    m_items << item;
}

bool RecordingPrinter::end(QString* error)
{
    PrintItem item;
    item.kind = PrintItem::End;
    m_items << item;
    return deliver(error);
}

void RecordingPrinter::cancel()
{
    PrintItem item;
    item.kind = PrintItem::Cancel;
    m_items << item;
}

QList<QList<PrintItem>> RecordingPrinter::pages() const
{
    QList<QList<PrintItem>> result(1);
    for (const PrintItem& item : m_items) {
        if (item.kind == PrintItem::NewPage)
            result.append(QList<PrintItem>());
        else if (item.kind == PrintItem::Text || item.kind == PrintItem::Line)
            result.last() << item;
    }
    return result;
}

bool RecordingPrinter::isEnded() const
{
    return !m_items.isEmpty() && m_items.last().kind == PrintItem::End;
}

bool RecordingPrinter::isCancelled() const
{
    return !m_items.isEmpty() && m_items.last().kind == PrintItem::Cancel;
}

QSize RecordingPrinter::a4PageTwips()
{
    // 210 x 297 mm less a quarter inch on the left and the right. The lists keep their own top
    // and bottom margins, and 65 rows need nearly the whole height of the sheet.
    return QSize(qRound(210 / 25.4 * 1440) - 720, qRound(297 / 25.4 * 1440));
}

bool RecordingPrinter::deliver(QString*)
{
    return true;
}

QFont printFont(int points, bool bold)
{
    QFont font = QGuiApplication::font();
    font.setPixelSize(points * 20);
    font.setBold(bold);
    return font;
}

int textWidthTwips(const QFont& screenFont, const QString& text)
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    const double dpi = screen ? screen->logicalDotsPerInch() : 96.0;
    return qRound(QFontMetricsF(screenFont).horizontalAdvance(text) * 1440.0 / dpi);
}

bool paintItems(const QList<PrintItem>& items, QPrinter* printer, QString* error)
{
    QPainter painter;
    if (!painter.begin(printer)) {
        if (error)
            *error = QStringLiteral("The printer could not be opened.");
        return false;
    }
    const double scale = printer->resolution() / 1440.0;
    painter.scale(scale, scale);
    int fontSize = -1;
    bool bold = false;
    double ascent = 0;
    for (const PrintItem& item : items) {
        switch (item.kind) {
        case PrintItem::Text:
            if (item.fontSize != fontSize || item.bold != bold) {
                fontSize = item.fontSize;
                bold = item.bold;
                const QFont font = printFont(fontSize, bold);
                painter.setFont(font);
                ascent = QFontMetricsF(font).ascent();
            }
            painter.drawText(QPointF(item.x, item.y + ascent), item.text);
            break;
        case PrintItem::Line:
            painter.drawLine(item.x, item.y, item.x2, item.y2);
            break;
        case PrintItem::NewPage:
            if (!printer->newPage()) {
                painter.end();
                if (error)
                    *error = QStringLiteral("The printer could not start a new page.");
                return false;
            }
            break;
        case PrintItem::End:
        case PrintItem::Cancel:
            break;
        }
    }
    const bool ok = painter.end() && printer->printerState() != QPrinter::Error;
    if (!ok && error)
        *error = QStringLiteral("The printer reported an error.");
    return ok;
}

PdfPrinter::PdfPrinter(const QString& path) : m_path(path) { }

bool PdfPrinter::deliver(QString* error)
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(m_path);
    printer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait,
                                      QMarginsF(0.25, 0, 0.25, 0), QPageLayout::Inch));
    return paintItems(items(), &printer, error);
}

std::unique_ptr<Printer> openDefaultPrinter(QWidget* parent)
{
    if (factorySlot())
        return factorySlot()();
    const QPrinterInfo info = QPrinterInfo::defaultPrinter();
    if (info.isNull())
        return nullptr;
    auto printer = std::make_unique<QPrinter>(info, QPrinter::HighResolution);
    return std::make_unique<PreviewPrinter>(std::move(printer), parent);
}

void setPrinterFactory(PrinterFactory factory)
{
    factorySlot() = std::move(factory);
}

} // namespace platform
