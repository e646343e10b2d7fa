<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>SpokenTexts</name>
    <message>
        <source>%1, folder, %2 app</source>
        <extracomment>%1: the folder&apos;s name</extracomment>
        <translation>%1、フォルダ、アプリ%2個</translation>
    </message>
    <message numerus="yes">
        <source>%1, folder, %2 apps</source>
        <extracomment>%1: the folder&apos;s name, %2: how many applications it holds, never 1</extracomment>
        <translation>
            <numerusform>%1、フォルダ、アプリ%2個</numerusform>
        </translation>
    </message>
    <message>
        <source>Page %1 of %2</source>
        <extracomment>%1: the page shown, %2: how many there are</extracomment>
        <translation>ページ %1 / %2</translation>
    </message>
    <message>
        <source>Clear</source>
        <extracomment>The button that empties the search field</extracomment>
        <translation>消去</translation>
    </message>
</context>
<context>
    <name>UpdateTexts</name>
    <message>
        <source>A new version of Amberquill is available</source>
        <translation>Amberquillの新しいバージョンがあります</translation>
    </message>
    <message>
        <source>Amberquill %1 is available. You have version %2.</source>
        <extracomment>%1: the new version, %2: this one</extracomment>
        <translation>Amberquill %1を利用できます。お使いのバージョンは%2です。</translation>
    </message>
    <message>
        <source>Release Notes</source>
        <translation>リリースノート</translation>
    </message>
    <message>
        <source>Skip This Version</source>
        <translation>このバージョンをスキップ</translation>
    </message>
    <message>
        <source>Remind Me Later</source>
        <translation>あとで通知</translation>
    </message>
    <message>
        <source>Install Update</source>
        <translation>アップデートをインストール</translation>
    </message>
    <message>
        <source>This copy of Amberquill cannot replace itself: install the new version with your system’s package manager, or get it from its release page.</source>
        <translation>このAmberquillは自分自身を置き換えられません。システムのパッケージマネージャで新しいバージョンをインストールするか、リリースページから入手してください。</translation>
    </message>
    <message>
        <source>Open Release Page</source>
        <translation>リリースページを開く</translation>
    </message>
    <message>
        <source>Checking for updates…</source>
        <translation>アップデートを確認中…</translation>
    </message>
    <message>
        <source>Downloading the update…</source>
        <translation>アップデートをダウンロード中…</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <extracomment>%1 and %2: sizes with their units</extracomment>
        <translation>%1 / %2</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>一時停止</translation>
    </message>
    <message>
        <source>The download is paused</source>
        <translation>ダウンロードを一時停止中</translation>
    </message>
    <message>
        <source>Resume</source>
        <translation>再開</translation>
    </message>
    <message>
        <source>Installing the update…</source>
        <translation>アップデートをインストール中…</translation>
    </message>
    <message>
        <source>The update is installed</source>
        <translation>アップデートをインストールしました</translation>
    </message>
    <message>
        <source>Restart Amberquill to use version %1.</source>
        <extracomment>%1: the new version</extracomment>
        <translation>バージョン%1を使うには、Amberquillを再起動してください。</translation>
    </message>
    <message>
        <source>Restart Now</source>
        <translation>今すぐ再起動</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>あとで</translation>
    </message>
    <message>
        <source>Update Failed</source>
        <translation>アップデートに失敗しました</translation>
    </message>
    <message>
        <source>The list of updates could not be fetched. Check your connection and try again.</source>
        <translation>アップデートの一覧をダウンロードできませんでした。接続を確認して、もう一度お試しください。</translation>
    </message>
    <message>
        <source>The list of updates could not be read.</source>
        <translation>アップデートの一覧を読み込めませんでした。</translation>
    </message>
    <message>
        <source>There is no valid download for the new version.</source>
        <translation>新しいバージョンには有効なダウンロードがありません。</translation>
    </message>
    <message>
        <source>The update could not be downloaded. Check your connection and try again.</source>
        <translation>アップデートをダウンロードできませんでした。接続を確認して、もう一度お試しください。</translation>
    </message>
    <message>
        <source>The download could not be saved. Make sure that there is enough free space.</source>
        <translation>ダウンロードを保存できませんでした。十分な空き容量があるか確認してください。</translation>
    </message>
    <message>
        <source>This copy of Amberquill has no key to check updates with. Nothing was installed.</source>
        <translation>このAmberquillにはアップデートを検証する鍵がありません。何もインストールされていません。</translation>
    </message>
    <message>
        <source>The update is not signed. It was not installed.</source>
        <translation>アップデートに署名がありません。インストールされていません。</translation>
    </message>
    <message>
        <source>The update’s signature is not valid: it may have been tampered with. It was deleted and not installed.</source>
        <translation>アップデートの署名が無効です。改ざんされた可能性があります。ファイルは削除され、インストールされていません。</translation>
    </message>
    <message>
        <source>The download does not have the announced size. It was deleted and not installed.</source>
        <translation>ダウンロードしたファイルのサイズが公表されたものと異なります。ファイルは削除され、インストールされていません。</translation>
    </message>
    <message>
        <source>The update is not newer than this version. It was not installed.</source>
        <translation>このアップデートは現在のバージョンより新しくありません。インストールされていません。</translation>
    </message>
    <message>
        <source>The program’s file could not be replaced. The version that you have still works.</source>
        <translation>プログラムのファイルを置き換えられませんでした。現在のバージョンは引き続き使えます。</translation>
    </message>
</context>
</TS>
