<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>SpokenTexts</name>
    <message>
        <source>%1, folder, %2 app</source>
        <extracomment>%1: the folder&apos;s name</extracomment>
        <translation>%1，文件夹，%2 个应用</translation>
    </message>
    <message numerus="yes">
        <source>%1, folder, %2 apps</source>
        <extracomment>%1: the folder&apos;s name, %2: how many applications it holds, never 1</extracomment>
        <translation>
            <numerusform>%1，文件夹，%2 个应用</numerusform>
        </translation>
    </message>
    <message>
        <source>Page %1 of %2</source>
        <extracomment>%1: the page shown, %2: how many there are</extracomment>
        <translation>第 %1 页，共 %2 页</translation>
    </message>
    <message>
        <source>Clear</source>
        <extracomment>The button that empties the search field</extracomment>
        <translation>清除</translation>
    </message>
</context>
<context>
    <name>UpdateTexts</name>
    <message>
        <source>A new version of Amberquill is available</source>
        <translation>Amberquill 有新版本可用</translation>
    </message>
    <message>
        <source>Amberquill %1 is available. You have version %2.</source>
        <extracomment>%1: the new version, %2: this one</extracomment>
        <translation>Amberquill %1 现已可用。当前版本为 %2。</translation>
    </message>
    <message>
        <source>Release Notes</source>
        <translation>版本说明</translation>
    </message>
    <message>
        <source>Skip This Version</source>
        <translation>跳过此版本</translation>
    </message>
    <message>
        <source>Remind Me Later</source>
        <translation>稍后提醒我</translation>
    </message>
    <message>
        <source>Install Update</source>
        <translation>安装更新</translation>
    </message>
    <message>
        <source>This copy of Amberquill cannot replace itself: install the new version with your system’s package manager, or get it from its release page.</source>
        <translation>此 Amberquill 无法自行替换：请使用系统的软件包管理器安装新版本，或从发布页面下载。</translation>
    </message>
    <message>
        <source>Open Release Page</source>
        <translation>打开发布页面</translation>
    </message>
    <message>
        <source>Checking for updates…</source>
        <translation>正在检查更新…</translation>
    </message>
    <message>
        <source>Downloading the update…</source>
        <translation>正在下载更新…</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <extracomment>%1 and %2: sizes with their units</extracomment>
        <translation>已下载 %1，共 %2</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>暂停</translation>
    </message>
    <message>
        <source>The download is paused</source>
        <translation>下载已暂停</translation>
    </message>
    <message>
        <source>Resume</source>
        <translation>继续</translation>
    </message>
    <message>
        <source>Installing the update…</source>
        <translation>正在安装更新…</translation>
    </message>
    <message>
        <source>The update is installed</source>
        <translation>更新已安装</translation>
    </message>
    <message>
        <source>Restart Amberquill to use version %1.</source>
        <extracomment>%1: the new version</extracomment>
        <translation>重新启动 Amberquill 以使用版本 %1。</translation>
    </message>
    <message>
        <source>Restart Now</source>
        <translation>立即重新启动</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>稍后</translation>
    </message>
    <message>
        <source>Update Failed</source>
        <translation>更新失败</translation>
    </message>
    <message>
        <source>The list of updates could not be fetched. Check your connection and try again.</source>
        <translation>无法下载更新列表。请检查网络连接后重试。</translation>
    </message>
    <message>
        <source>The list of updates could not be read.</source>
        <translation>无法读取更新列表。</translation>
    </message>
    <message>
        <source>There is no valid download for the new version.</source>
        <translation>新版本没有可用的下载文件。</translation>
    </message>
    <message>
        <source>The update could not be downloaded. Check your connection and try again.</source>
        <translation>无法下载更新。请检查网络连接后重试。</translation>
    </message>
    <message>
        <source>The download could not be saved. Make sure that there is enough free space.</source>
        <translation>无法保存下载文件。请确认有足够的可用空间。</translation>
    </message>
    <message>
        <source>This copy of Amberquill has no key to check updates with. Nothing was installed.</source>
        <translation>此 Amberquill 没有用于验证更新的密钥。未安装任何内容。</translation>
    </message>
    <message>
        <source>The update is not signed. It was not installed.</source>
        <translation>此更新未签名，未安装。</translation>
    </message>
    <message>
        <source>The update’s signature is not valid: it may have been tampered with. It was deleted and not installed.</source>
        <translation>更新的签名无效，可能已被篡改。更新已被删除，未安装。</translation>
    </message>
    <message>
        <source>The download does not have the announced size. It was deleted and not installed.</source>
        <translation>下载文件的大小与公布的不符。文件已被删除，未安装。</translation>
    </message>
    <message>
        <source>The update is not newer than this version. It was not installed.</source>
        <translation>该更新并不比当前版本新，未安装。</translation>
    </message>
    <message>
        <source>The program’s file could not be replaced. The version that you have still works.</source>
        <translation>无法替换程序文件。现有版本仍可正常使用。</translation>
    </message>
</context>
</TS>
