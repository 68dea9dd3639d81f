// Lists a bucket of 10,000 objects under 1,000 prefixes through the S3
// client (the way the prefix and restore listings page through it, 1,000
// keys a page), beside `rclone lsf` on the same bucket of the same server:
// OpenStack Swift with s3api, started and stopped here (or the one in
// NVB_TEST_SWIFT_DIR). Two listings: every key (no delimiter, 10 pages) and
// the 1,000 prefixes (delimiter "/"). Three rounds, medians. Target: no
// slower than rclone.

#include <algorithm>
#include <cstdio>
#include <numeric>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtConcurrent>

#include "cloud/cloudconfig.h"
#include "cloud/cloudtype.h"
#include "cloud/providers/s3client.h"

using namespace NVL::Cloud;

namespace {

const QString Bucket = QStringLiteral("nvb-bench-listing");
constexpr int Prefixes = 1000;
constexpr int PerPrefix = 10;

QString readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
}

QMap<QString, QVariant> config(int port)
{
    return {{Config::Type, Name::AmazonS3Like}, {Config::AmazonS3Like::AccessKey, QStringLiteral("test:tester")},
        {Config::AmazonS3Like::SecretKey, QStringLiteral("testing")},
        {Api::Config::Http::Endpoint, QStringLiteral("127.0.0.1:%1").arg(port)}, {Api::Config::Http::UseSsl, false},
        {Config::AmazonS3Like::Signature::Key, Config::AmazonS3Like::Signature::Value::V4},
        {OperationConfig::ContainerName, Bucket}};
}

// Every key of the bucket through the client; -1 on a failure.
int listAll(const QMap<QString, QVariant>& settings, const QString& delimiter)
{
    S3Client client;
    CancelToken cancel;
    int count = 0;
    QString marker;
    do {
        const OperationResult page = client.listing(settings, {QString(), delimiter, marker, 1000}, cancel);
        if (page.isError()) {
            std::fprintf(stderr, "listing failed: %s\n", qPrintable(page.errorMessage));
            return -1;
        }
        count += page.data.size();
        marker = page.marker;
    } while (!marker.isEmpty());
    return count;
}

int rcloneCount(const QStringList& arguments, const QProcessEnvironment& environment)
{
    QProcess rclone;
    rclone.setProcessEnvironment(environment);
    rclone.start(QStringLiteral("rclone"), arguments);
    if (!rclone.waitForFinished(300000) || rclone.exitCode() != 0) {
        std::fprintf(stderr, "rclone failed: %s\n", rclone.readAllStandardError().constData());
        return -1;
    }
    return rclone.readAllStandardOutput().count('\n');
}

double median(QVector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QString dir = qEnvironmentVariable("NVB_TEST_SWIFT_DIR");
    QTemporaryDir own;
    const bool started = dir.isEmpty();
    if (started) {
        dir = own.path();
        if (QProcess::execute(QStringLiteral("bash"), {QStringLiteral(NVB_SWIFT_SCRIPT), QStringLiteral("start"), dir})
                != 0
            || !QFile::exists(dir + QStringLiteral("/port"))) {
            std::fprintf(stderr, "the Swift server did not start: %s\n", qPrintable(readFile(dir + "/unavailable")));
            return 1;
        }
    }
    const int port = readFile(dir + QStringLiteral("/port")).toInt();
    const QMap<QString, QVariant> settings = config(port);
    int status = 0;
    {
        S3Client client;
        CancelToken cancel;
        client.createContainer(settings, {{QStringLiteral("Name"), Bucket}}, cancel);
        if (listAll(settings, QString()) != Prefixes * PerPrefix) {
            QElapsedTimer filling;
            filling.start();
            QVector<int> prefixes(Prefixes);
            std::iota(prefixes.begin(), prefixes.end(), 0);
            QThreadPool::globalInstance()->setMaxThreadCount(16);
            QtConcurrent::blockingMap(prefixes, [&settings](int prefix) {
                S3Client uploader;
                CancelToken none;
                for (int i = 0; i < PerPrefix; ++i) {
                    S3Client::Request put;
                    put.method = "PUT";
                    put.bucket = Bucket;
                    put.key = QStringLiteral("NVB_%1/object-%2").arg(prefix, 4, 10, QLatin1Char('0')).arg(i);
                    put.body = put.key.toUtf8();
                    uploader.request(settings, put, none);
                }
            });
            std::printf("filled %d objects in %.1f s\n", Prefixes * PerPrefix, filling.elapsed() / 1000.0);
        }

        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        // A CA bundle for AWS from the caller's environment makes rclone's
        // S3 backend fail at once on plain HTTP; the bucket is on 127.0.0.1.
        environment.remove(QStringLiteral("AWS_CA_BUNDLE"));
        environment.insert(QStringLiteral("RCLONE_CONFIG_NVB_TYPE"), QStringLiteral("s3"));
        environment.insert(QStringLiteral("RCLONE_CONFIG_NVB_PROVIDER"), QStringLiteral("Other"));
        environment.insert(QStringLiteral("RCLONE_CONFIG_NVB_ACCESS_KEY_ID"), QStringLiteral("test:tester"));
        environment.insert(QStringLiteral("RCLONE_CONFIG_NVB_SECRET_ACCESS_KEY"), QStringLiteral("testing"));
        environment.insert(
            QStringLiteral("RCLONE_CONFIG_NVB_ENDPOINT"), QStringLiteral("http://127.0.0.1:%1").arg(port));
        environment.insert(QStringLiteral("RCLONE_CONFIG_NVB_FORCE_PATH_STYLE"), QStringLiteral("true"));
        const QString remote = QStringLiteral("nvb:") + Bucket;

        QVector<double> oursAll, oursPrefixes, rcloneAll, rclonePrefixes;
        for (int round = 0; round < 3 && status == 0; ++round) {
            QElapsedTimer timer;
            timer.start();
            const int all = listAll(settings, QString());
            oursAll.append(timer.nsecsElapsed() / 1e6);
            timer.restart();
            const int folders = listAll(settings, QStringLiteral("/"));
            oursPrefixes.append(timer.nsecsElapsed() / 1e6);
            timer.restart();
            const int rcloneKeys = rcloneCount(
                {QStringLiteral("lsf"), QStringLiteral("-R"), QStringLiteral("--files-only"), remote}, environment);
            rcloneAll.append(timer.nsecsElapsed() / 1e6);
            timer.restart();
            const int rcloneFolders = rcloneCount({QStringLiteral("lsf"), remote}, environment);
            rclonePrefixes.append(timer.nsecsElapsed() / 1e6);
            if (all != Prefixes * PerPrefix || folders != Prefixes || rcloneKeys != all || rcloneFolders != folders) {
                std::fprintf(stderr, "counts differ: ours %d keys %d prefixes, rclone %d keys %d prefixes\n", all,
                    folders, rcloneKeys, rcloneFolders);
                status = 1;
            }
        }
        if (status == 0) {
            std::printf("every key (%d, 10 pages): S3 client %.0f ms, rclone lsf -R %.0f ms, ratio %.2f\n",
                Prefixes * PerPrefix, median(oursAll), median(rcloneAll), median(oursAll) / median(rcloneAll));
            std::printf("prefixes (%d, delimiter /): S3 client %.0f ms, rclone lsf %.0f ms, ratio %.2f\n", Prefixes,
                median(oursPrefixes), median(rclonePrefixes), median(oursPrefixes) / median(rclonePrefixes));
        }
    }
    if (started)
        QProcess::execute(QStringLiteral("bash"), {QStringLiteral(NVB_SWIFT_SCRIPT), QStringLiteral("stop"), dir});
    return status;
}
