#include "core/perfil.h"

#include "core/literais.h"
#include <QStringDecoder>
#include <QStringEncoder>

#include <array>

namespace {

// Bytes 80h to 9Fh of Windows-1252; the rest of the page equals Latin-1. Qt carries no such codec of its own.
constexpr std::array<char16_t, 32> pagina1252 = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                 0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

QString ler1252(const QByteArray &bytes) {
    QString texto(bytes.size(), Qt::Uninitialized);
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const auto b = static_cast<uchar>(bytes[i]);
        texto[i] = (b >= 0x80 && b < 0xA0) ? QChar(pagina1252[b - 0x80]) : QChar(b);
    }
    return texto;
}

QByteArray escrever1252(const QString &texto) {
    QByteArray bytes;
    bytes.reserve(texto.size());
    for (const QChar c : texto) {
        const char16_t u = c.unicode();
        if (u < 0x80 || (u >= 0xA0 && u < 0x100)) {
            bytes.append(static_cast<char>(u));
        } else {
            const auto *achado = std::find(pagina1252.begin(), pagina1252.end(), u);
            bytes.append(achado == pagina1252.end() ? '?' : static_cast<char>(0x80 + (achado - pagina1252.begin())));
        }
    }
    return bytes;
}

bool eUtf8Valido(const QByteArray &bytes) {
    QStringDecoder leitor(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString ignorado = leitor(bytes);
    return !leitor.hasError();
}

// "[name]" -> name; anything else -> null.
QString nomeDaSeccao(const QString &linha) {
    const QString t = linha.trimmed();
    if (!t.startsWith(u'['))
        return {};
    const qsizetype fecho = t.indexOf(u']');
    return fecho < 0 ? t.mid(1).trimmed() : QStringView(t).mid(1, fecho - 1).trimmed().toString();
}

bool eSeccao(const QString &linha) {
    return QStringView(linha).trimmed().startsWith(u'[');
}

bool iguais(QStringView a, QStringView b) {
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

} // namespace

Perfil::Perfil(const QByteArray &bytes) {
    QString texto;
    if (bytes.startsWith("\xEF\xBB\xBF")) {
        m_codificacao = Codificacao::Utf8Marca;
        texto = QString::fromUtf8(bytes.mid(3));
    } else if (bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF")) {
        const bool le = bytes.startsWith("\xFF\xFE");
        m_codificacao = le ? Codificacao::Utf16Le : Codificacao::Utf16Be;
        QStringDecoder leitor(le ? QStringDecoder::Utf16LE : QStringDecoder::Utf16BE);
        texto = leitor(bytes.mid(2));
    } else if (eUtf8Valido(bytes)) {
        texto = QString::fromUtf8(bytes);
    } else {
        m_codificacao = Codificacao::Windows1252;
        texto = ler1252(bytes);
    }
    separarLinhas(texto);
}

void Perfil::separarLinhas(const QString &texto) {
    qsizetype inicio = 0;
    while (inicio < texto.size()) {
        qsizetype fim = inicio;
        while (fim < texto.size() && texto[fim] != u'\n' && texto[fim] != u'\r')
            ++fim;
        qsizetype depois = fim;
        if (depois < texto.size())
            depois += (texto[fim] == u'\r' && fim + 1 < texto.size() && texto[fim + 1] == u'\n') ? 2 : 1;
        m_linhas.push_back({texto.mid(inicio, fim - inicio), texto.mid(fim, depois - fim)});
        inicio = depois;
    }
}

QByteArray Perfil::bytes() const {
    QString texto;
    for (const Linha &l : m_linhas)
        texto += l.texto + l.fim;
    switch (m_codificacao) {
    case Codificacao::Utf8:
        break;
    case Codificacao::Utf8Marca:
        return "\xEF\xBB\xBF" + texto.toUtf8();
    case Codificacao::Utf16Le:
        return QByteArray("\xFF\xFE") + QByteArray(QStringEncoder(QStringEncoder::Utf16LE)(texto));
    case Codificacao::Utf16Be:
        return QByteArray("\xFE\xFF") + QByteArray(QStringEncoder(QStringEncoder::Utf16BE)(texto));
    case Codificacao::Windows1252:
        return escrever1252(texto);
    }
    return texto.toUtf8();
}

int Perfil::procurarSeccao(const QString &seccao) const {
    for (size_t i = 0; i < m_linhas.size(); ++i)
        if (eSeccao(m_linhas[i].texto) && iguais(nomeDaSeccao(m_linhas[i].texto), seccao))
            return static_cast<int>(i);
    return -1;
}

int Perfil::procurarChave(int aposLinha, const QString &chave) const {
    for (size_t i = static_cast<size_t>(aposLinha) + 1; i < m_linhas.size(); ++i) {
        const QString &t = m_linhas[i].texto;
        if (eSeccao(t))
            return -1;
        const qsizetype igual = t.indexOf(u'=');
        if (igual > 0 && !QStringView(t).trimmed().startsWith(u';') &&
            iguais(QStringView(t).left(igual).trimmed(), chave))
            return static_cast<int>(i);
    }
    return -1;
}

std::optional<QString> Perfil::valor(const QString &seccao, const QString &chave) const {
    const int s = procurarSeccao(seccao.trimmed());
    const int k = s < 0 ? -1 : procurarChave(s, chave.trimmed());
    if (k < 0)
        return std::nullopt;
    const QString &t = m_linhas[static_cast<size_t>(k)].texto;
    QString v = t.mid(t.indexOf(u'=') + 1).trimmed();
    // A pair of quotes around a value protects its outer blanks, as the profile calls have it.
    if (v.size() >= 2 && (v.front() == u'"' || v.front() == u'\'') && v.back() == v.front())
        v = v.mid(1, v.size() - 2);
    return v;
}

QString Perfil::fimDeLinha() const {
    for (const Linha &l : m_linhas)
        if (!l.fim.isEmpty())
            return l.fim;
    return u"\r\n"_s;
}

void Perfil::definir(const QString &seccao, const QString &chave, const QString &valor) {
    const QString fim = fimDeLinha();
    const QString linha = chave.trimmed() + u'=' + valor;
    int s = procurarSeccao(seccao.trimmed());
    if (s < 0) {
        if (!m_linhas.empty() && m_linhas.back().fim.isEmpty())
            m_linhas.back().fim = fim;
        m_linhas.push_back({u'[' + seccao.trimmed() + u']', fim});
        m_linhas.push_back({linha, fim});
        return;
    }
    if (const int k = procurarChave(s, chave.trimmed()); k >= 0) {
        Linha &existente = m_linhas[static_cast<size_t>(k)];
        existente.texto = existente.texto.left(existente.texto.indexOf(u'=') + 1) + valor;
        return;
    }
    // After the section's last line that says something, so that blank lines stay between sections.
    auto posicao = static_cast<size_t>(s);
    for (size_t i = posicao + 1; i < m_linhas.size() && !eSeccao(m_linhas[i].texto); ++i)
        if (!m_linhas[i].texto.trimmed().isEmpty())
            posicao = i;
    if (m_linhas[posicao].fim.isEmpty())
        m_linhas[posicao].fim = fim;
    m_linhas.insert(m_linhas.begin() + static_cast<std::ptrdiff_t>(posicao) + 1, Linha{linha, fim});
}

QStringList Perfil::seccoes() const {
    QStringList nomes;
    for (const Linha &l : m_linhas)
        if (eSeccao(l.texto))
            nomes.append(nomeDaSeccao(l.texto));
    return nomes;
}

QStringList Perfil::chaves(const QString &seccao) const {
    QStringList nomes;
    const int s = procurarSeccao(seccao);
    for (size_t i = static_cast<size_t>(s + 1); s >= 0 && i < m_linhas.size() && !eSeccao(m_linhas[i].texto); ++i) {
        const QString &t = m_linhas[i].texto;
        const qsizetype igual = t.indexOf(u'=');
        if (igual > 0 && !QStringView(t).trimmed().startsWith(u';'))
            nomes.append(t.left(igual).trimmed());
    }
    return nomes;
}
