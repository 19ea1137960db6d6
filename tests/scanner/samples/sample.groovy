// A report over a folder of logs, written against the Groovy language documentation.
package sample.logs

import groovy.transform.CompileStatic
import java.nio.file.Files
import java.nio.file.Path

/**
 * One line of a log: its time, level and message.
 * @param line the raw text
 */
@CompileStatic
class Entry {
    String time
    String level
    String message

    static Entry parse(String line) {
        def m = line =~ /^(\S+)\s+\[(\w+)\]\s+(.*)$/
        if (!m.matches()) {
            return null
        }
        new Entry(time: m.group(1), level: m.group(2), message: m.group(3))
    }

    String toString() { "${time} ${level}: ${message}" }
}

/* Counts the entries of each level. A map keeps the order
   in which the levels were first met. */
Map<String, Integer> countLevels(List<Entry> entries) {
    def counts = [:]
    entries.each { e -> counts[e.level] = (counts[e.level] ?: 0) + 1 }
    counts
}

def usage = '''\
usage: report DIR [LEVEL]
  Reads every *.log file of DIR and prints a summary.
'''

def template = """
Report for ${new Date().format('yyyy-MM-dd')}
Files: %d
"""

def dir = args.length > 0 ? Path.of(args[0]) : null
if (dir == null || !Files.isDirectory(dir)) {
    System.err.println usage
    System.exit(1)
}

def wanted = args.length > 1 ? args[1].toUpperCase() : 'ALL'
def files = Files.list(dir).filter { it.toString().endsWith('.log') }.toList()
def entries = files.collectMany { Path p ->
    p.readLines().collect { Entry.parse(it) }.findAll { it != null }
}

println String.format(template, files.size())
countLevels(entries).each { level, n ->
    if (wanted == 'ALL' || level == wanted) {
        println "  ${level.padRight(8)} $n"
    }
}

def pattern = $/C:\logs\[a-z]+\.log/$
def limit = 0xFF
def ratio = 2.5e3
def sep = ','
assert entries.every { it.level in ['INFO', "WARN", 'ERROR'] }: "unknown level"
