import java.io.FileInputStream;
import java.io.FileOutputStream;
import java.lang.management.ManagementFactory;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.Paths;
import java.util.ArrayList;
import java.util.List;
import org.apache.poi.hwpf.HWPFDocument;
import org.apache.poi.hwpf.model.CHPBinTable;
import org.apache.poi.hwpf.model.CHPX;
import org.apache.poi.hwpf.sprm.SprmBuffer;

/**
 * The job on a binary document as a competent user writes it on libapache-poi-java: runs are cut at the ends of
 * blocks in one walk, since the library's own highlight is of whole runs.
 *
 *   java -cp /usr/share/java/poi.jar:/usr/share/java/poi-scratchpad.jar:/usr/share/java/commons-collections4.jar HighlightWithPoi.java BEGIN END FILE [TURNS]
 *
 * Each turn reads FILE and writes the result to FILE.poi. Printed are the blocks found and the median of the turns'
 * seconds and of their processor time, the first half left out, in which the machine warms up.
 */
public final class HighlightWithPoi {
  private static final short HIGHLIGHT = 0x2A0C;
  private static final byte YELLOW = 7;

  public static void main(String[] arguments) throws Exception {
    String begin = arguments[0];
    String end = arguments[1];
    int turns = arguments.length > 3 ? Integer.parseInt(arguments[3]) : 10;
    com.sun.management.OperatingSystemMXBean system =
        (com.sun.management.OperatingSystemMXBean) ManagementFactory.getOperatingSystemMXBean();
    List<Double> seconds = new ArrayList<>();
    List<Double> processor = new ArrayList<>();
    int found = 0;
    for (int turn = 0; turn < turns; ++turn) {
      long started = System.nanoTime();
      long used = system.getProcessCpuTime();
      found = work(Paths.get(arguments[2]), begin, end);
      if (turn < turns / 2) continue;
      processor.add((system.getProcessCpuTime() - used) / 1e9);
      seconds.add((System.nanoTime() - started) / 1e9);
    }
    System.out.printf("%d %.3f %.3f%n", found, median(seconds), median(processor));
  }

  private static double median(List<Double> numbers) {
    numbers.sort(null);
    return numbers.get(numbers.size() / 2);
  }

  private static int work(Path file, String begin, String end) throws Exception {
    try (HWPFDocument document = new HWPFDocument(new FileInputStream(file.toFile()))) {
      String text = document.getText().substring(0, document.getRange().getEndOffset());
      List<int[]> blocks = find(text, begin, end);
      highlight(document.getCharacterTable(), blocks);
      try (FileOutputStream out = new FileOutputStream(file + ".poi")) {
        document.write(out);
      }
      return blocks.size();
    }
  }

  private static List<int[]> find(String text, String begin, String end) {
    List<int[]> blocks = new ArrayList<>();
    for (int at = text.indexOf(begin); at >= 0;) {
      int last = text.indexOf(end, at + begin.length());
      if (last < 0) break;
      blocks.add(new int[] {at, last + end.length()});
      at = text.indexOf(begin, last + end.length());
    }
    return blocks;
  }

  private static void highlight(CHPBinTable table, List<int[]> blocks) {
    CHPBinTable cut = new CHPBinTable();
    int next = 0;
    for (CHPX run : table.getTextRuns()) {
      int at = run.getStart();
      while (at < run.getEnd()) {
        while (next < blocks.size() && blocks.get(next)[1] <= at) ++next;
        int from = next < blocks.size() ? blocks.get(next)[0] : Integer.MAX_VALUE;
        boolean inside = from <= at;
        int to = Math.min(run.getEnd(), inside ? blocks.get(next)[1] : from);
        SprmBuffer look = run.getSprmBuf();
        if (inside) {
          look = look.clone();
          look.updateSprm(HIGHLIGHT, YELLOW);
        }
        List<CHPX> runs = cut.getTextRuns();
        cut.insert(runs.size(), at, look);
        runs.get(runs.size() - 1).setEnd(to);
        at = to;
      }
    }
    table.getTextRuns().clear();
    table.getTextRuns().addAll(cut.getTextRuns());
  }
}
