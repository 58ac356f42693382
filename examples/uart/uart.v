// Serial transmitter: a start bit, eight data bits with the lowest first, a stop bit. tick is high for one clock in each
// bit time; start is looked at while the line is idle. The line rests at 1, and reset puts it there.
module uart(
  input            clk,
  input            reset_n,
  input            tick,
  input            start,
  input      [7:0] data,
  output reg       tx,
  output           busy
);
  reg [3:0] left;  // bits still to be sent, the stop bit among them
  reg [7:0] shift; // what follows on the line

  assign busy = left != 0;

  always @(posedge clk or negedge reset_n)
    if (!reset_n) begin
      tx <= 1;
      left <= 0;
      shift <= 0;
    end else if (tick) begin
      if (left == 0) begin
        tx <= !start;
        left <= start ? 9 : 0;
        shift <= data;
      end else begin
        tx <= left == 1 || shift[0];
        left <= left - 1;
        shift <= shift >> 1;
      end
    end
endmodule
