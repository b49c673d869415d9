#pragma once

#include <QImage>
#include <QList>
#include <QMarginsF>
#include <QPageLayout>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

class QPainter;

// Where a report's lines come from: a forward-only walk over records with named fields, texts ready to be printed.
class FonteDeRelatorio {
public:
    virtual ~FonteDeRelatorio() = default;
    virtual QStringList campos() const = 0;
    virtual qint64 total() const = 0; // for the progress display; may be an estimate
    virtual bool seguinte() = 0;
    virtual QString texto(int campo) const = 0;
};

// One named control of a section.
struct ControloDeRelatorio {
    enum class Tipo { Rotulo, Caixa, Imagem };
    QString Name;
    Tipo tipo = Tipo::Rotulo;
    QString Caption;     // labels
    QString DataField;   // text boxes: a field of the data source
    QImage picture;      // images
    double esquerda = 0; // left edge and width as parts of the page's inner width
    double largura = 1;
    Qt::Alignment alinhamento = Qt::AlignLeft;
    double corpo = 9; // points
    bool negrito = false;
};

struct SeccaoDeRelatorio {
    QString Name;
    QList<ControloDeRelatorio> Controls;
    // Null when the report has no such control, which is no error.
    ControloDeRelatorio *controlo(const QString &nome);
};

// A designed report: named sections with named controls, laid out on A4 pages. Section4 is the page head, Section2 the
// picture or the column heads (both repeated on every page), Section1 one line per record, Section3 and Section5 the
// page foot. Long texts wrap; a record that is higher than a page goes on on the next one, any other stays whole.
class DataReport {
public:
    DataReport(QString nome, QPageLayout::Orientation orientacao, QList<SeccaoDeRelatorio> seccoes);

    QString Name() const { return m_nome; }
    SeccaoDeRelatorio *Sections(const QString &nome);
    // Sets the caption of a label wherever it stands in the section; without such a control nothing happens.
    void rotulo(const QString &seccao, const QString &controlo, const QString &texto);
    void setDataSource(std::unique_ptr<FonteDeRelatorio> fonte);

    // Reads the data source and breaks it into pages. The callback gets lines done and expected after each line;
    // false stops, and the report then has no pages.
    bool preparar(const std::function<bool(qint64 feitas, qint64 total)> &progresso = {});
    int paginas() const { return int(m_inicios.size()); }
    QPageLayout disposicao() const;
    // Paints one page so that it fills the target; the same drawing for screen, printer and PDF.
    void pintarPagina(QPainter &pintor, int pagina, const QRectF &destino) const;

private:
    struct Medidor;
    // Where a page begins: at a record, and in one that goes on at a place in the text of each box.
    struct Inicio {
        size_t registo = 0;
        std::vector<qsizetype> desde;
    };
    QStringList linha(size_t indice) const;
    bool paginar(const Medidor &medidor, double disponivel, const std::function<bool(qint64, qint64)> &progresso);
    bool cortar(const Medidor &medidor, size_t registo, const QStringList &textos, double disponivel, double &usado,
                const std::function<bool()> &passar);
    double pintarRegisto(QPainter &pintor, const Medidor &medidor, size_t registo, const Inicio &inicio,
                         const Inicio &fim, double y) const;
    double alturaDaLinha(const Medidor &medidor, const QStringList &textos) const;
    double alturaDaSeccao(const Medidor &medidor, const SeccaoDeRelatorio *seccao) const;
    void pintarSeccao(QPainter &pintor, const Medidor &medidor, const SeccaoDeRelatorio *seccao, double topo) const;
    const SeccaoDeRelatorio *seccao(const QString &nome) const;
    QSizeF interior() const;

    QString m_nome;
    QPageLayout::Orientation m_orientacao;
    QList<SeccaoDeRelatorio> m_seccoes;
    std::unique_ptr<FonteDeRelatorio> m_fonte;
    std::vector<int> m_campoDaCaixa; // field of each text box of Section1, -1 for none
    QByteArray m_textos;             // the boxes' texts, UTF-8, one record after the other
    std::vector<qsizetype> m_fins;   // end of each box's text in m_textos
    std::vector<Inicio> m_inicios;   // of each page
};
