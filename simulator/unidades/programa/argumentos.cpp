#include "simulator/unidades/programa/argumentos.h"

#include "core/literais.h"
#include "demo/unidadesVirtuais.h"

#include <QDir>
#include <QFile>
#include <QHostAddress>
#include <QStandardPaths>

#include <optional>

using simulador::Definicao;

namespace {

// A number within bounds.
std::optional<int> numero(const QString &texto, int minimo, int maximo) {
    bool lido = false;
    const int n = texto.toInt(&lido);
    return lido && n >= minimo && n <= maximo ? std::optional(n) : std::nullopt;
}

template <typename T>
bool guardar(T &destino, const std::optional<int> &n) {
    if (n)
        destino = T(*n);
    return n.has_value();
}

// "101;Câmara 1;C;4.0;1.8;1.0;7.0": number, name, unit, and for readings mean, amplitude and limits.
bool juntarCanal(Definicao &d, const QString &texto) {
    const QStringList partes = texto.split(u';');
    const bool entrada = partes.value(2) == u"s";
    if (partes.size() != (entrada ? 3 : 7) || partes[0].isEmpty() || partes[1].isEmpty())
        return false;
    simulador::Canal canal{partes[0], partes[1], partes[2]};
    double *const numeros[] = {&canal.centro, &canal.amplitude, &canal.minimo, &canal.maximo};
    bool lido = true;
    for (qsizetype i = 3; lido && i < partes.size(); ++i)
        *numeros[i - 3] = partes[i].toDouble(&lido);
    if (lido)
        partes[0].toULongLong(&lido);
    if (lido)
        d.canais.append(canal);
    return lido;
}

// An argument "@file" stands for the file's lines.
std::optional<QStringList> comFicheiros(const QStringList &linha) {
    QStringList todos;
    for (qsizetype i = 0; i < linha.size(); ++i) {
        if (i == 0 || !linha[i].startsWith(u'@')) {
            todos += linha[i];
            continue;
        }
        QFile ficheiro(linha[i].mid(1));
        if (!ficheiro.open(QIODevice::ReadOnly))
            return std::nullopt;
        const auto linhas = QString::fromUtf8(ficheiro.readAll()).split(u'\n');
        for (const QString &l : linhas)
            if (!l.trimmed().isEmpty())
                todos += l.trimmed();
    }
    return todos;
}

struct Opcao {
    QStringView nome;
    QStringView valor;
    QStringView descricao;
    bool (*aplicar)(Definicao &, const QString &);
};

// All of them count for the unit they follow; those before the first unit count for every one.
constexpr Opcao opcoes[] = {
    {u"nome", u"TEXTO", u"nome da unidade", [](Definicao &d, const QString &v) { return !(d.nome = v).isEmpty(); }},
    {u"mac", u"MAC", u"endereço físico, como 00:0A:59:00:12:34",
     [](Definicao &d, const QString &v) { return (d.mac = v).size() == 17; }},
    {u"modelo", u"4|34", u"4: Poseidon 2251 (por omissão); 34: Poseidon 2250; ou outro código",
     [](Definicao &d, const QString &v) { return guardar(d.modelo, numero(v, 0, 32767)); }},
    {u"porta-web", u"N", u"porta de HTTP e do log (8080; 0: uma livre)",
     [](Definicao &d, const QString &v) { return guardar(d.portaWeb, numero(v, 0, 65535)); }},
    {u"porta-consola", u"N", u"porta da consola de texto (8099)",
     [](Definicao &d, const QString &v) { return guardar(d.portaConsola, numero(v, 0, 65535)); }},
    {u"porta-pesquisa", u"N", u"porta UDP da pesquisa (22510)",
     [](Definicao &d, const QString &v) { return guardar(d.portaPesquisa, numero(v, 0, 65535)); }},
    {u"canal", u"ID;NOME;C;...", u"um canal em vez dos habituais: ID;NOME;UNIDADE;CENTRO;AMPLITUDE;MÍNIMO;MÁXIMO",
     juntarCanal},
    {u"clima", u"SEMENTE", u"os canais da demonstração lêem o que a história dela guarda (sem ela, ondas)",
     [](Definicao &d, const QString &v) {
         bool lido = false;
         const quint64 semente = v.toULongLong(&lido);
         if (lido)
             d.leitura = demonstracao::leiturasDasUnidades(semente);
         return lido;
     }},
    {u"registos", u"N", u"registos que cabem na memória (2000)",
     [](Definicao &d, const QString &v) { return guardar(d.registos, numero(v, 1, 5'000'000)); }},
    {u"intervalo", u"SEGUNDOS", u"tempo entre registos (300)",
     [](Definicao &d, const QString &v) { return guardar(d.intervalo, numero(v, 1, 86400)); }},
    {u"relogio", u"MINUTOS", u"adiantamento do relógio; -21: atrasado 21 minutos (0)",
     [](Definicao &d, const QString &v) { return guardar(d.acertoMinutos, numero(v, -527040, 527040)); }},
    {u"atraso", u"MS", u"demora dos defeitos que demoram (2500)",
     [](Definicao &d, const QString &v) { return guardar(d.atrasoMs, numero(v, 0, 600000)); }},
    {u"defeito", u"NOME", u"um mau comportamento; pode repetir-se; ver --defeitos",
     [](Definicao &d, const QString &v) {
         const auto defeito = simulador::defeitoDe(v);
         if (defeito)
             d.defeitos.ligar(*defeito);
         return defeito.has_value();
     }},
    {u"estado", u"PASTA", u"onde fica o que foi apagado e acertado; - para não guardar",
     [](Definicao &d, const QString &v) { return !(d.ficheiroEstado = v).isEmpty(); }},
};

QString coluna(const QString &texto, int largura) {
    return u"  "_s + texto.leftJustified(largura) + u' ';
}

// The option's own value is a folder until all units are known.
void escolherFicheiroDeEstado(Definicao &d) {
    if (d.ficheiroEstado == u"-"_s)
        d.ficheiroEstado.clear();
    else
        d.ficheiroEstado += u'/' + d.endereco + u".json"_s;
}

Definicao comum() {
    Definicao d;
    d.portaWeb = 8080;
    d.portaConsola = 8099;
    d.portaPesquisa = 22510;
    d.ficheiroEstado = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/Kelvark-unidades"_s;
    return d;
}

} // namespace

Argumentos lerArgumentos(const QStringList &dados) {
    Argumentos lidos;
    const std::optional<QStringList> todos = comFicheiros(dados);
    if (!todos) {
        lidos.erro = u"Um ficheiro de argumentos não se lê."_s;
        return lidos;
    }
    const QStringList &linha = *todos;
    Definicao base = comum();
    for (qsizetype i = 1; i < linha.size(); ++i) {
        QString nome = linha.at(i);
        if (nome == u"--help"_s || nome == u"-h"_s || nome == u"--ajuda"_s || nome == u"--defeitos"_s) {
            (nome == u"--defeitos"_s ? lidos.defeitos : lidos.ajuda) = true;
            return lidos;
        }
        const auto falhar = [&](const QString &texto) {
            lidos.erro = texto;
            return lidos;
        };
        if (!nome.startsWith(u"--"))
            return falhar(u"Não se esperava \"%1\"."_s.arg(nome));
        nome.remove(0, 2);
        QString valor;
        if (const qsizetype igual = nome.indexOf(u'='); igual > 0) {
            valor = nome.mid(igual + 1);
            nome.truncate(igual);
        } else if (i + 1 < linha.size()) {
            valor = linha.at(++i);
        } else {
            return falhar(u"Falta o valor de --%1."_s.arg(nome));
        }
        if (nome == u"unidade"_s) {
            if (!QHostAddress(valor).isLoopback() || valor.count(u'.') != 3)
                return falhar(
                    u"\"%1\" não é um endereço 127.x.x.x: as unidades virtuais não saem deste computador."_s.arg(
                        valor));
            lidos.unidades.append(base);
            lidos.unidades.last().endereco = valor;
            continue;
        }
        const auto opcao =
            std::find_if(std::begin(opcoes), std::end(opcoes), [&](const Opcao &o) { return o.nome == nome; });
        if (opcao == std::end(opcoes))
            return falhar(u"Não há a opção --%1."_s.arg(nome));
        if (!opcao->aplicar(lidos.unidades.isEmpty() ? base : lidos.unidades.last(), valor))
            return falhar(u"\"%1\" não serve para --%2."_s.arg(valor, nome));
    }
    if (lidos.unidades.isEmpty())
        lidos.erro = u"Falta pelo menos uma --unidade."_s;
    for (Definicao &d : lidos.unidades)
        escolherFicheiroDeEstado(d);
    return lidos;
}

QString textoDeAjuda(const QString &programa) {
    QString texto = u"Unidades virtuais em endereços 127.x.x.x, com página web, setup.xml, log, pesquisa e consola.\n\n"
                    "Uso: %1 [opções comuns] --unidade ENDEREÇO [opções] [--unidade ENDEREÇO [opções]]...\n\n"
                    "As opções valem para a unidade que as precede; antes da primeira, para todas.\n\n"_s.arg(programa);
    texto += coluna(u"--unidade ENDEREÇO"_s, 22) + u"mais uma unidade, como 127.0.0.2\n"_s;
    for (const Opcao &o : opcoes)
        texto += coluna(u"--"_s + o.nome + u' ' + o.valor, 22) + o.descricao + u'\n';
    texto += coluna(u"@FICHEIRO"_s, 22) + u"os argumentos das linhas de um ficheiro\n"_s;
    texto += coluna(u"--defeitos"_s, 22) + u"lista dos maus comportamentos\n"_s;
    texto +=
        u"\nExemplo:\n  %1 --unidade 127.0.0.2 --nome \"Câmara 1\" --unidade 127.0.0.3 --nome Cais --defeito lento\n"_s
            .arg(programa);
    return texto;
}

QString textoDosDefeitos() {
    QString texto;
    for (const auto &info : simulador::tabelaDeDefeitos)
        texto += coluna(info.nome.toString(), 22) + info.descricao + u'\n';
    return texto;
}
