#include "platform/report/DataReport.h"

#include "core/falha.h"
#include "core/literais.h"
#include "core/textoMostrado.h"
#include "platform/report/linhasDeTexto.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QRegularExpression>
#include <QTextOption>

#include <algorithm>

namespace {

// Layout is done once, in units of 1/720 inch, and only scaled afterwards, so every device breaks lines alike.
constexpr double unidadesPorPonto = 10;
constexpr double margem = 42 * unidadesPorPonto; // 15 mm
constexpr double folgaDeLinha = 3 * unidadesPorPonto;
constexpr double folgaDeColuna = 4 * unidadesPorPonto;
constexpr double folgaDeSeccao = 6 * unidadesPorPonto;
const QString seccaoDasLinhas = u"Section1"_s;

// A head that leaves no room for records would have no end of pages.
constexpr qsizetype maximoDaLegenda = 725;
constexpr double minimoParaRegistos = 0.25; // of the page
// A note is printed as long as it is.
QString imprimivel(const QString &texto) {
    return textoMostrado::paragrafos(texto, textoMostrado::semLimite);
}

// Words stay whole; only what is longer than a line breaks inside.
QTextOption opcaoDeTexto(Qt::Alignment alinhamento) {
    QTextOption opcao(alinhamento | Qt::AlignTop);
    opcao.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    return opcao;
}

double alturaEmLinhas(const QString &texto, const QFont &fonte, double largura) {
    LinhasDeTexto linhas(texto, fonte, largura);
    double altura = 0;
    for (LinhasDeTexto::Linha linha; linhas.seguinte(linha);)
        altura += linha.altura;
    return altura;
}

} // namespace

// Fonts and their metrics at the layout's resolution.
struct DataReport::Medidor {
    explicit Medidor(double larguraTotal) : largura(larguraTotal) {}
    double largura;

    QFont fonte(const ControloDeRelatorio &c) const {
        QFont f(u"DejaVu Sans"_s);
        f.setPixelSize(int(c.corpo * unidadesPorPonto));
        f.setBold(c.negrito);
        return f;
    }
    QRectF caixa(const ControloDeRelatorio &c, double topo, double altura) const {
        const bool ultima = c.esquerda + c.largura > 1 - 1e-6;
        return {c.esquerda * largura, topo, c.largura * largura - (ultima ? 0 : folgaDeColuna), altura};
    }
    // Devices differ a little in the widths of letters: measured in a narrower box, no line is ever lost.
    double disponivelEm(const ControloDeRelatorio &c) const { return (c.largura * largura - folgaDeColuna) * 0.97; }
    // What stands apart in one line stands below when there is no room, not torn in two.
    QString legenda(const ControloDeRelatorio &c) const {
        static const QRegularExpression intervalo(u" {8,}"_s);
        const QString texto =
            c.Caption.size() > maximoDaLegenda ? c.Caption.left(maximoDaLegenda) + u" ..." : c.Caption;
        return QFontMetricsF(fonte(c)).horizontalAdvance(texto) < disponivelEm(c)
                   ? texto
                   : QString(texto).replace(intervalo, u"\n"_s);
    }
    double altura(const ControloDeRelatorio &c, const QString &texto) const {
        if (c.tipo == ControloDeRelatorio::Tipo::Imagem)
            return c.picture.isNull() ? 0 : c.largura * largura * c.picture.height() / c.picture.width();
        if (texto.isEmpty())
            return 0;
        return umaLinha(c, texto) ? QFontMetricsF(fonte(c)).height() : alturaEmLinhas(texto, fonte(c), disponivelEm(c));
    }
    // The usual cell is one short line: no need for a full layout.
    bool umaLinha(const ControloDeRelatorio &c, const QString &texto) const {
        constexpr qsizetype semMedir = 500;
        return texto.size() < semMedir && !texto.contains(u'\n') &&
               QFontMetricsF(fonte(c)).horizontalAdvance(texto) < disponivelEm(c);
    }
    LinhasDeTexto linhas(const ControloDeRelatorio &c, const QString &texto, qsizetype inicio) const {
        return {texto, fonte(c), disponivelEm(c), inicio};
    }
};

ControloDeRelatorio *SeccaoDeRelatorio::controlo(const QString &nome) {
    for (ControloDeRelatorio &c : Controls)
        if (c.Name == nome)
            return &c;
    return nullptr;
}

DataReport::DataReport(QString nome, QPageLayout::Orientation orientacao, QList<SeccaoDeRelatorio> seccoes)
    : m_nome(std::move(nome)), m_orientacao(orientacao), m_seccoes(std::move(seccoes)) {}

SeccaoDeRelatorio *DataReport::Sections(const QString &nome) {
    for (SeccaoDeRelatorio &s : m_seccoes)
        if (s.Name == nome)
            return &s;
    return nullptr;
}

const SeccaoDeRelatorio *DataReport::seccao(const QString &nome) const {
    return const_cast<DataReport *>(this)->Sections(nome);
}

void DataReport::rotulo(const QString &seccao, const QString &controlo, const QString &texto) {
    if (SeccaoDeRelatorio *s = Sections(seccao))
        if (ControloDeRelatorio *c = s->controlo(controlo))
            c->Caption = imprimivel(texto);
}

void DataReport::setDataSource(std::unique_ptr<FonteDeRelatorio> fonte) {
    m_fonte = std::move(fonte);
}

QPageLayout DataReport::disposicao() const {
    return {QPageSize(QPageSize::A4), m_orientacao, QMarginsF(0, 0, 0, 0)};
}

QSizeF DataReport::interior() const {
    const QSizeF pontos = disposicao().fullRectPoints().size();
    return {pontos.width() * unidadesPorPonto - 2 * margem, pontos.height() * unidadesPorPonto - 2 * margem};
}

// Controls of a section are stacked as they overlap: those side by side share a line.
double DataReport::alturaDaSeccao(const Medidor &medidor, const SeccaoDeRelatorio *s) const {
    double total = 0;
    double linha = 0;
    double direita = 0;
    for (const ControloDeRelatorio &c : s ? s->Controls : QList<ControloDeRelatorio>()) {
        const double altura = medidor.altura(c, medidor.legenda(c));
        if (c.esquerda < direita - 1e-6) {
            total += linha > 0 ? linha + folgaDeLinha : 0;
            linha = 0;
        }
        linha = std::max(linha, altura);
        direita = c.esquerda + c.largura;
    }
    total += linha;
    return total > 0 ? total + folgaDeSeccao : 0;
}

void DataReport::pintarSeccao(QPainter &pintor, const Medidor &medidor, const SeccaoDeRelatorio *s, double topo) const {
    double linha = 0;
    double direita = 0;
    for (const ControloDeRelatorio &c : s ? s->Controls : QList<ControloDeRelatorio>()) {
        if (c.esquerda < direita - 1e-6) {
            topo += linha > 0 ? linha + folgaDeLinha : 0;
            linha = 0;
        }
        const QString legenda = medidor.legenda(c);
        const double altura = medidor.altura(c, legenda);
        if (c.tipo == ControloDeRelatorio::Tipo::Imagem) {
            if (!c.picture.isNull())
                pintor.drawImage(QRectF(c.esquerda * medidor.largura, topo, c.largura * medidor.largura, altura),
                                 c.picture);
        } else if (altura > 0) {
            pintor.setFont(medidor.fonte(c));
            pintor.drawText(medidor.caixa(c, topo, altura + unidadesPorPonto), legenda, opcaoDeTexto(c.alinhamento));
        }
        linha = std::max(linha, altura);
        direita = c.esquerda + c.largura;
    }
}

QStringList DataReport::linha(size_t indice) const {
    QStringList textos;
    const size_t caixas = m_campoDaCaixa.size();
    for (size_t i = indice * caixas; i < (indice + 1) * caixas; ++i) {
        const qsizetype inicio = i == 0 ? 0 : m_fins[i - 1];
        textos.append(QString::fromUtf8(QByteArrayView(m_textos).sliced(inicio, m_fins[i] - inicio)));
    }
    return textos;
}

double DataReport::alturaDaLinha(const Medidor &medidor, const QStringList &textos) const {
    const SeccaoDeRelatorio *s = seccao(seccaoDasLinhas);
    double altura = 0;
    for (qsizetype i = 0; i < textos.size(); ++i)
        altura = std::max(altura, medidor.altura(s->Controls[i], textos[i]));
    if (altura == 0)
        altura = QFontMetricsF(medidor.fonte(s->Controls.first())).height();
    return altura + folgaDeLinha;
}

bool DataReport::preparar(const std::function<bool(qint64, qint64)> &progresso) {
    m_inicios.assign(1, {});
    m_textos.clear();
    m_fins.clear();
    m_campoDaCaixa.clear();
    const SeccaoDeRelatorio *detalhe = seccao(seccaoDasLinhas);
    if (!m_fonte || !detalhe || detalhe->Controls.isEmpty())
        return true;
    const QStringList campos = m_fonte->campos();
    for (const ControloDeRelatorio &c : detalhe->Controls)
        m_campoDaCaixa.push_back(int(campos.indexOf(c.DataField)));

    const QSizeF area = interior();
    const Medidor medidor(area.width());
    const double topo = alturaDaSeccao(medidor, seccao(u"Section4"_s)) + alturaDaSeccao(medidor, seccao(u"Section2"_s));
    const double pe = QFontMetricsF(medidor.fonte(ControloDeRelatorio())).height() + 2 * folgaDeSeccao;
    const double disponivel = std::max(area.height() - topo - pe, area.height() * minimoParaRegistos);
    if (paginar(medidor, disponivel, progresso))
        return true;
    m_inicios.clear();
    return false;
}

bool DataReport::paginar(const Medidor &medidor, double disponivel,
                         const std::function<bool(qint64, qint64)> &progresso) {
    double usado = 0;
    size_t registo = 0;
    const auto passar = [&] { return !progresso || progresso(qint64(registo), m_fonte->total()); };
    for (; m_fonte->seguinte(); ++registo) {
        QStringList textos;
        for (const int campo : m_campoDaCaixa) {
            textos.append(campo < 0 ? QString() : imprimivel(m_fonte->texto(campo)));
            m_textos += textos.last().toUtf8();
            m_fins.push_back(m_textos.size());
        }
        const double altura = alturaDaLinha(medidor, textos);
        if (altura > disponivel) {
            if (!cortar(medidor, registo, textos, disponivel, usado, passar))
                return false;
            continue;
        }
        if (usado + altura > disponivel && usado > 0) {
            m_inicios.push_back({registo, {}});
            usado = 0;
        }
        usado += altura;
        if (!passar())
            return false;
    }
    return passar();
}

// A record that is higher than a page: as many lines as there is room for on each, from where it stands.
bool DataReport::cortar(const Medidor &medidor, size_t registo, const QStringList &textos, double disponivel,
                        double &usado, const std::function<bool()> &passar) {
    const QList<ControloDeRelatorio> &caixas = seccao(seccaoDasLinhas)->Controls;
    std::vector<LinhasDeTexto> linhas;
    std::vector<LinhasDeTexto::Linha> proximas(size_t(textos.size()));
    std::vector<qsizetype> desde(size_t(textos.size()), 0);
    const auto avancar = [&](size_t i) {
        desde[i] = linhas[i].seguinte(proximas[i]) ? proximas[i].inicio : textos[qsizetype(i)].size();
    };
    for (size_t i = 0; i < desde.size(); ++i) {
        linhas.push_back(medidor.linhas(caixas[qsizetype(i)], textos[qsizetype(i)], 0));
        avancar(i);
    }
    for (bool ha = true; ha;) {
        ha = false;
        double maisAlta = 0;
        for (size_t i = 0; i < desde.size(); ++i) {
            double altura = 0;
            while (desde[i] < textos[qsizetype(i)].size()) {
                const bool cabe = usado + altura + proximas[i].altura + folgaDeLinha <= disponivel;
                if (!cabe && usado + altura > 0) // on an empty page a line goes in whatever its height
                    break;
                altura += proximas[i].altura;
                avancar(i);
            }
            maisAlta = std::max(maisAlta, altura);
            ha = ha || desde[i] < textos[qsizetype(i)].size();
        }
        usado += maisAlta + folgaDeLinha;
        if (ha) {
            m_inicios.push_back({registo, desde});
            usado = 0;
        }
        if (!passar())
            return false;
    }
    return true;
}

// The part of a record that lies between the beginnings of two pages; gives back where the next one goes.
double DataReport::pintarRegisto(QPainter &pintor, const Medidor &medidor, size_t registo, const Inicio &inicio,
                                 const Inicio &fim, double y) const {
    const QList<ControloDeRelatorio> &caixas = seccao(seccaoDasLinhas)->Controls;
    const QStringList textos = linha(registo);
    const bool continua = registo == inicio.registo && !inicio.desde.empty();
    const bool cortada = registo == fim.registo && !fim.desde.empty();
    double maisAlta = 0;
    for (qsizetype i = 0; i < textos.size(); ++i) {
        const ControloDeRelatorio &c = caixas[i];
        const qsizetype ate = cortada ? fim.desde[size_t(i)] : textos[i].size();
        pintor.setFont(medidor.fonte(c));
        QTextOption opcao = opcaoDeTexto(c.alinhamento);
        opcao.setWrapMode(QTextOption::NoWrap);
        if (!continua && !cortada && medidor.umaLinha(c, textos[i])) {
            const double altura = textos[i].isEmpty() ? 0 : QFontMetricsF(medidor.fonte(c)).height();
            pintor.drawText(medidor.caixa(c, y, altura + unidadesPorPonto), textos[i], opcao);
            maisAlta = std::max(maisAlta, altura);
            continue;
        }
        double altura = 0;
        LinhasDeTexto linhas = medidor.linhas(c, textos[i], continua ? inicio.desde[size_t(i)] : 0);
        for (LinhasDeTexto::Linha l; linhas.seguinte(l) && l.inicio < ate; altura += l.altura)
            pintor.drawText(medidor.caixa(c, y + altura, l.altura + unidadesPorPonto),
                            textos[i].mid(l.inicio, l.tamanho).trimmed(), opcao);
        maisAlta = std::max(maisAlta, altura);
    }
    if (maisAlta == 0)
        maisAlta = QFontMetricsF(medidor.fonte(caixas.first())).height();
    return y + maisAlta + folgaDeLinha;
}

void DataReport::pintarPagina(QPainter &pintor, int pagina, const QRectF &destino) const {
    const QSizeF area = interior();
    const Medidor medidor(area.width());
    pintor.save();
    pintor.translate(destino.topLeft());
    pintor.scale(destino.width() / (area.width() + 2 * margem), destino.height() / (area.height() + 2 * margem));
    pintor.translate(margem, margem);
    pintor.setPen(QPen(Qt::black, unidadesPorPonto / 2));
    pintor.setRenderHint(QPainter::SmoothPixmapTransform);

    double y = 0;
    for (const QString &nome : {u"Section4"_s, u"Section2"_s}) {
        pintarSeccao(pintor, medidor, seccao(nome), y);
        y += alturaDaSeccao(medidor, seccao(nome));
    }
    const SeccaoDeRelatorio *detalhe = seccao(seccaoDasLinhas);
    if (detalhe && !m_campoDaCaixa.empty()) {
        pintor.drawLine(QPointF(0, y - folgaDeSeccao / 2), QPointF(area.width(), y - folgaDeSeccao / 2));
        const auto p = static_cast<size_t>(pagina);
        const Inicio fim =
            p + 1 < m_inicios.size() ? m_inicios[p + 1] : Inicio{m_fins.size() / m_campoDaCaixa.size(), {}};
        for (size_t r = m_inicios[p].registo; r < fim.registo + (fim.desde.empty() ? 0 : 1); ++r)
            y = pintarRegisto(pintor, medidor, r, m_inicios[p], fim, y);
    }

    ControloDeRelatorio numero;
    numero.esquerda = 0.6;
    numero.largura = 0.4;
    numero.corpo = 8;
    numero.alinhamento = Qt::AlignRight;
    numero.Caption = u"%1 / %2"_s.arg(pagina + 1).arg(paginas());
    const double pe = area.height() - QFontMetricsF(medidor.fonte(numero)).height() - unidadesPorPonto;
    pintor.drawLine(QPointF(0, pe - folgaDeLinha), QPointF(area.width(), pe - folgaDeLinha));
    pintarSeccao(pintor, medidor, seccao(u"Section3"_s), pe);
    pintarSeccao(pintor, medidor, seccao(u"Section5"_s), pe);
    SeccaoDeRelatorio numeros;
    numeros.Controls.append(numero);
    pintarSeccao(pintor, medidor, &numeros, pe);
    pintor.restore();
}
