#include "logger/registoDS1921.h"

#include "core/literais.h"
#include "core/modDoubleTratamento.h"
#include "logger/numeros1921.h"

#include <algorithm>
#include <cmath>

namespace registoDS1921 {

namespace {

constexpr int tamanhoDaRanhura = 30; // of the old record
constexpr int caracteresDaRanhura = 27;
constexpr int caracteresDeCalibracao = 6;
constexpr int maiorNumero = 9999;
constexpr int amostrasNaMemoria = 2048;
constexpr int registoDeControlo = 14;

// Blanks and the zero characters that fill a slot up.
QString aparar(const QString &texto) {
    QStringView v(texto);
    const auto enchimento = [](QChar c) { return c.isSpace() || c.isNull(); };
    while (!v.isEmpty() && enchimento(v.front()))
        v = v.mid(1);
    while (!v.isEmpty() && enchimento(v.back()))
        v.chop(1);
    return v.toString();
}

bool comNumero(const QString &campo) {
    return campo.size() > digitosDoNumero && numeros1921::eNumerico(campo.left(digitosDoNumero));
}

double contador(const tmex::Pagina &pagina, int maisBaixo) {
    quint32 valor = 0;
    for (int i = maisBaixo + 2; i >= maisBaixo; --i)
        valor = ShiftBitsLeft(valor, 8) | pagina[size_t(i)];
    return valor;
}

void decifrarMissao(const QString &campo, Registo &r) {
    const QString missao = aparar(campo);
    r.TextoMissao = missao.size() <= digitosDoNumero ? missao + u'x' : missao;
    if (r.TextoMissao.size() > digitosDoNumero)
        r.descricaoMissao = r.TextoMissao.mid(digitosDoNumero);
    const QString numero = r.TextoMissao.left(digitosDoNumero);
    const bool numerico = numeros1921::eNumerico(numero);
    r.NumeroMissaoActual = numerico ? qint16(std::lround(modDoubleTratamento::TextoParaDouble(numero))) : qint16(0);
    r.numeroMissao = numerico ? numero : numeroDeMissao(0);
    if (r.TextoMissao.size() > digitosDoNumero)
        r.TextoMissao.remove(0, digitosDoNumero);
}

void decifrarCalibracao(const QString &campo, Registo &r) {
    const QString texto = aparar(campo).left(caracteresDeCalibracao).replace(u'.', u',');
    if (texto.isEmpty()) {
        r.calibracao = numeros1921::formatar(0, 1);
    } else if (numeros1921::eNumerico(texto)) {
        r.calibracao = texto;
        r.Calibracao = valorDeCalibracao(texto);
    }
}

QString intervaloDe(const QString &campo) {
    const QString texto = campo.mid(tamanhoDoROMID);
    if (!numeros1921::eNumerico(texto))
        return u"1"_s;
    const double minutos = std::floor(modDoubleTratamento::TextoParaDouble(texto));
    return minutos > 0 && minutos <= numeros1921::maiorIntervalo ? QString::number(int(minutos)) : u"1"_s;
}

} // namespace

QStringList CriarEstruturaDasLinhas(const QString &campo0, const QString &campo1, const QString &campo2,
                                    const QString &campo3) {
    const QChar fim(u'\n');
    QString resto = campo0 + fim + campo1 + fim + campo2 + fim + campo3 + fim;
    QStringList linhas = {QString()};
    for (int proxima = 2; proxima <= ultimaPagina; ++proxima) {
        if (resto.size() <= caracteresPorPagina) {
            linhas.append(resto + QString(2, QChar(u'\0')));
            break;
        }
        linhas.append(resto.left(caracteresPorPagina) + QChar(char16_t(proxima)));
        resto.remove(0, caracteresPorPagina);
    }
    return linhas;
}

bool TratarMemoriaDS1921(const QString &texto, Campos &campos) {
    campos = {};
    if (texto.isEmpty())
        return true;
    QString limpo = texto;
    limpo.removeIf([](QChar c) { return c.unicode() < u'\n'; }); // links and filler
    const QStringList partes = limpo.split(u'\n');
    if (partes.size() < qsizetype(campos.size()))
        return false;
    std::copy_n(partes.begin(), campos.size(), campos.begin());
    return comNumero(campos[0]);
}

bool TratarMemoriaDS1921_OldVersion(const QString &texto, Campos &campos, const QString &numero) {
    campos = {};
    if (texto.isEmpty())
        return true;
    QString resto = texto;
    for (QString &campo : campos) {
        if (resto.size() < tamanhoDaRanhura)
            break;
        campo = aparar(resto.left(caracteresDaRanhura));
        resto.remove(0, tamanhoDaRanhura);
    }
    campos[2] += numero;
    return comNumero(campos[0]) && campos[2].size() >= tamanhoDoROMID && !campos[1].isEmpty() && !campos[3].isEmpty();
}

bool registoInteiro(std::span<const PaginaDeTexto> paginas) {
    const auto cheia = [](const PaginaDeTexto &p) { return p.tamanho > 0; };
    if (paginas.empty() || !cheia(paginas.front()))
        return std::none_of(paginas.begin(), paginas.end(), cheia);
    for (size_t i = 0; i + 1 < paginas.size(); ++i) {
        // Page i + 1 ends with the number of the next, or is the last.
        const bool continua = paginas[i].tamanho == bytesPorPacote &&
                              paginas[i].texto.at(bytesPorPacote - 1).unicode() == char16_t(i + 2);
        if (!continua)
            return true;
        if (!cheia(paginas[i + 1]))
            return false;
    }
    return true;
}

QString textoDosBytes(std::span<const quint8> bytes) {
    return QString::fromLatin1(reinterpret_cast<const char *>(bytes.data()), qsizetype(bytes.size()));
}

QByteArray bytesDoTexto(const QString &texto) {
    return texto.left(bytesPorPacote).toLatin1();
}

bool cabeNoRegisto(QChar c) {
    return c.unicode() >= u' ' && c.unicode() <= 0xFF && c.unicode() != 0x7F;
}

QString numeroDeMissao(int numero) {
    return u"%1"_s.arg(numero, digitosDoNumero, 10, QChar(u'0'));
}

int numeroSeguinte(int maiorGuardado) {
    return maiorGuardado > 0 && maiorGuardado < maiorNumero ? maiorGuardado + 1 : 1;
}

QString textoROM(const tmex::NumeroROM &numero) {
    constexpr int ateAqui = 33; // longer than a byte needs, and so the family ends the text as "021"
    QString texto;
    for (auto i = numero.rbegin(); i != numero.rend(); ++i) {
        if (*i <= ateAqui)
            texto += u'0';
        texto += QString::number(*i, 16).toUpper();
    }
    return texto;
}

QString ROMIDde(const tmex::NumeroROM &numero) {
    QString texto;
    for (auto i = numero.rbegin(); i != numero.rend(); ++i)
        texto += u"%1"_s.arg(*i, 2, 16, QChar(u'0')).toUpper();
    return texto;
}

quint32 ShiftBitsLeft(quint32 valor, int bits) {
    return bits < 32 ? valor << bits : 0;
}

std::optional<Registo> decifrar(const QString &texto, const QString &numero) {
    Registo r;
    Campos campos;
    if (!TratarMemoriaDS1921(texto, campos)) {
        if (!TratarMemoriaDS1921_OldVersion(texto, campos, numero))
            return std::nullopt;
        r.VersaoAntiga = true;
    }
    r.descricaoRegistador = aparar(campos[1]);
    if (r.descricaoRegistador.isEmpty())
        r.descricaoRegistador = u"x"_s;
    decifrarMissao(campos[0], r);
    decifrarCalibracao(campos[3], r);
    r.intervalo = intervaloDe(campos[2]);
    return r;
}

double valorDeCalibracao(const QString &texto) {
    const QString limpo = texto.trimmed().replace(u'.', u',');
    return numeros1921::eNumerico(limpo) ? modDoubleTratamento::TextoParaDouble(limpo) : 0.0;
}

double LerAmostrasDispositivo(const tmex::Pagina &pagina) {
    return contador(pagina, 29);
}

double LerAmostrasMissao(const tmex::Pagina &pagina) {
    return contador(pagina, 26);
}

bool RolloverOcorreu(const tmex::Pagina &pagina) {
    return pagina[registoDeControlo] != 0 && LerAmostrasMissao(pagina) > amostrasNaMemoria;
}

} // namespace registoDS1921
