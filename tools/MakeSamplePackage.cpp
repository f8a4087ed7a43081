#include "tlv/ZelFile.h"

#include <QCoreApplication>
#include <QTextStream>

/// Makes a package of a firmware image, with a few rules of each kind, for pictures and trials.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    QTextStream errors(stderr);
    if (arguments.size() != 3) {
        errors << "usage: make_sample_package FIRMWARE.bin PACKAGE.zel\n";
        return EXIT_FAILURE;
    }

    tlv::ZelFile package;
    package.setMaskRules({{1801, 0, "RISCV-****-01"}, {12, 4, "3.*"}, {1650, 2, "A2**"}});
    package.setTokenRules({{"A", "1"}, {"B", "2"}, {"C", "rev 3"}});
    package.setSoftwareOptions({true, {1, 4}, {5, 99}, true, {0, 0}, {99, 99}});
    package.setHardware(2, 7, 2, 1);
    package.setFirmwareFile(arguments.at(1), 0x80000000U);

    QString path = arguments.at(2);
    QString message;
    if (!package.save(path, message)) {
        errors << message << '\n';
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
